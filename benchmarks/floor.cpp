// SPDX-License-Identifier: MIT
// What the XML engine alone costs: the queries of an export or an import over a tree in memory, with no registry.
//
//     floor TREE export DOCUMENT      writes the configuration document
//     floor TREE import DOCUMENT      compares a document with the tree, then reads it with a handler that does nothing
//
// TREE is mapped into memory and used as it lies there, so that it costs nothing to have the tree.

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtXml/QXmlDefaultHandler>
#include <QtXml/QXmlInputSource>
#include <QtXml/QXmlSimpleReader>
#include <QtXmlPatterns/QSimpleXmlNodeModel>
#include <QtXmlPatterns/QXmlFormatter>
#include <QtXmlPatterns/QXmlName>
#include <QtXmlPatterns/QXmlQuery>

#include <cstdlib>

namespace {

/// A stretch of the file's text, in UTF-16 units.
struct Text {
    qint32 begin;
    qint32 size;
};

/// Nodes and names by number, -1 for none; a directory's text begins at -1.
struct Node {
    qint32 parent;
    qint32 firstChild;
    qint32 previous;
    qint32 next;
    qint32 name;
    Text text;
};

/// TREE: the two numbers, the nodes from the root on, the names, the text; integers in the machine's order.
struct Header {
    qint32 nodes;
    qint32 names;
};

class Tree : public QSimpleXmlNodeModel {
public:
    Tree(const QXmlNamePool &pool, const uchar *data)
        : QSimpleXmlNodeModel(pool), nodes(reinterpret_cast<const Node *>(data + sizeof(Header))) {
        const auto &header = *reinterpret_cast<const Header *>(data);
        const auto *const nameTexts = reinterpret_cast<const Text *>(nodes + header.nodes);
        text = reinterpret_cast<const QChar *>(nameTexts + header.names);
        names.reserve(header.names);
        for (qint32 i = 0; i < header.names; ++i)
            names.append(QXmlName(namePool(), stringAt(nameTexts[i])));
    }

    QXmlNodeModelIndex rootIndex() const { return createIndex(qint64(0), Element); }

    QUrl documentUri(const QXmlNodeModelIndex & /*node*/) const override { return {}; }
    QXmlNodeModelIndex::NodeKind kind(const QXmlNodeModelIndex &node) const override {
        return node.additionalData() == Element ? QXmlNodeModelIndex::Element : QXmlNodeModelIndex::Text;
    }
    QXmlNodeModelIndex::DocumentOrder compareOrder(const QXmlNodeModelIndex & /*first*/,
                                                   const QXmlNodeModelIndex & /*second*/) const override {
        return QXmlNodeModelIndex::Precedes;
    }
    QXmlNodeModelIndex root(const QXmlNodeModelIndex & /*node*/) const override { return rootIndex(); }
    QXmlName name(const QXmlNodeModelIndex &node) const override { return names.at(nodes[node.data()].name); }
    QString stringValue(const QXmlNodeModelIndex &node) const override {
        return node.additionalData() == Element ? QSimpleXmlNodeModel::stringValue(node)
                                                : stringAt(nodes[node.data()].text);
    }
    QVariant typedValue(const QXmlNodeModelIndex &node) const override { return stringAt(nodes[node.data()].text); }

protected:
    QXmlNodeModelIndex nextFromSimpleAxis(SimpleAxis axis, const QXmlNodeModelIndex &index) const override {
        const Node &node = nodes[index.data()];
        if (index.additionalData() == Characters)
            return axis == Parent ? createIndex(index.data(), Element) : QXmlNodeModelIndex();
        switch (axis) {
        case Parent:
            return element(node.parent);
        case FirstChild:
            return node.text.begin < 0 ? element(node.firstChild) : createIndex(index.data(), Characters);
        case PreviousSibling:
            return element(node.previous);
        case NextSibling:
            return element(node.next);
        }
        return {};
    }
    QVector<QXmlNodeModelIndex> attributes(const QXmlNodeModelIndex & /*node*/) const override { return {}; }

private:
    enum NodeCode { Element, Characters };

    QXmlNodeModelIndex element(qint32 number) const {
        return number < 0 ? QXmlNodeModelIndex() : createIndex(static_cast<qint64>(number), Element);
    }
    QString stringAt(const Text &place) const {
        return place.begin < 0 ? QString() : QString::fromRawData(text + place.begin, place.size);
    }

    const Node *const nodes;
    const QChar *text;
    QVector<QXmlName> names;
};

void require(bool succeeded, const char *what) {
    if (!succeeded)
        qFatal("%s failed", what);
}

QByteArray exported(const uchar *tree) {
    QByteArray viewText;
    {
        QXmlNamePool pool;
        const Tree view(pool, tree);
        QXmlQuery query(pool);
        query.bindVariable(QStringLiteral("lumoConfig"), QXmlItem(view.rootIndex()));
        query.setQuery(QUrl(QStringLiteral("qrc:/queries/wholeConfig.xq")), QUrl());
        QBuffer buffer(&viewText);
        buffer.open(QIODevice::WriteOnly);
        QXmlFormatter formatter(query, &buffer);
        require(query.evaluateTo(&formatter), "the walk");
    }
    QXmlQuery stylesheet(QXmlQuery::XSLT20);
    QBuffer input(&viewText);
    input.open(QIODevice::ReadOnly);
    require(stylesheet.setFocus(&input), "the load of the view");
    stylesheet.setQuery(QUrl(QStringLiteral("qrc:/queries/toLumoConfigFormat.xsl")), QUrl());
    QByteArray document("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n");
    QBuffer output(&document);
    output.open(QIODevice::WriteOnly | QIODevice::Append);
    QXmlFormatter formatter(stylesheet, &output);
    require(stylesheet.evaluateTo(&formatter), "the stylesheet");
    return document;
}

QByteArray loaded(QIODevice *file) {
    QByteArray document;
    QXmlQuery query;
    query.bindVariable(QStringLiteral("config"), file);
    query.setQuery(QUrl(QStringLiteral("qrc:/queries/wholeDoc.xq")), QUrl());
    QBuffer output(&document);
    output.open(QIODevice::WriteOnly);
    QXmlFormatter formatter(query, &output);
    require(query.evaluateTo(&formatter), "the load");
    return document;
}

void compare(QByteArray current, QByteArray wanted) {
    QBuffer initialConfig(&current);
    initialConfig.open(QIODevice::ReadOnly);
    QBuffer newConfig(&wanted);
    newConfig.open(QIODevice::ReadOnly);
    QXmlQuery query;
    query.bindVariable(QStringLiteral("initialConfig"), &initialConfig);
    query.bindVariable(QStringLiteral("newConfig"), &newConfig);
    query.setQuery(QUrl(QStringLiteral("qrc:/queries/diff.xq")), QUrl());
    QStringList sections;
    require(query.evaluateTo(&sections), "the comparison");
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
void parse(QFile &file) {
    QXmlDefaultHandler handler;
    QXmlSimpleReader reader;
    reader.setContentHandler(&handler);
    reader.setErrorHandler(&handler);
    file.seek(0);
    QXmlInputSource source(&file);
    require(reader.parse(source), "the parse");
}
QT_WARNING_POP

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    QCoreApplication::setLibraryPaths({});
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        qFatal("usage: floor TREE export|import DOCUMENT");

    QFile treeFile(arguments.at(1));
    require(treeFile.open(QIODevice::ReadOnly), "opening the tree");
    const uchar *const tree = treeFile.map(0, treeFile.size());
    QFile document(arguments.at(3));
    if (arguments.at(2) == QLatin1String("export")) {
        require(document.open(QIODevice::WriteOnly), "opening the document");
        document.write(exported(tree));
        document.close();
    } else {
        require(document.open(QIODevice::ReadOnly), "opening the document");
        const QByteArray current = exported(tree);
        compare(current, loaded(&document));
        parse(document);
    }
    std::exit(EXIT_SUCCESS);
}
