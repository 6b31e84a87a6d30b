// SPDX-License-Identifier: MIT
#include "document/documentscan.h"

#include "document/saxreader.h"
#include "document/structure.h"
#include "engine/limits.h"

#include <QtCore/QXmlStreamReader>

namespace quendar {

namespace {

/// Collects the names that the reader passes, as long as a name pool can hold them.
class NameCollector {
public:
    explicit NameCollector(const QXmlStreamReader &source) : reader(source) {}

    void addElement() {
        addName(reader.name(), reader.namespaceUri(), reader.prefix());
        const QXmlStreamAttributes attributes = reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes)
            addName(attribute.name(), attribute.namespaceUri(), attribute.prefix());
        const QXmlStreamNamespaceDeclarations declarations = reader.namespaceDeclarations();
        for (const QXmlStreamNamespaceDeclaration &declaration : declarations)
            addName({}, declaration.namespaceUri(), declaration.prefix());
    }

    void addProcessingInstruction() { addName(reader.processingInstructionTarget(), {}, {}); }

    const Names &names() const { return collected; }

private:
    void addName(const QStringRef &local, const QStringRef &uri, const QStringRef &prefix) {
        const bool isNewLocal = add(collected.local, local);
        const bool isNewUri = add(collected.namespaceUris, uri);
        const bool isNewPrefix = add(collected.prefixes, prefix);
        if ((isNewLocal || isNewUri || isNewPrefix) &&
            (collected.local.size() > maximumNames ||
             !makeName(pool, local.toString(), uri.toString(), prefix.toString())))
            throw atLine(tooManyNames(), reader.lineNumber());
    }

    static bool add(QSet<QString> &names, const QStringRef &name) {
        const int before = names.size();
        if (!name.isEmpty())
            names.insert(name.toString());
        return names.size() != before;
    }

    const QXmlStreamReader &reader;
    QXmlNamePool pool;
    Names collected;
};

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the reader that the applier will have

/// Has the applier's own reader report the elements to a `Structure`. It stops the reader instead of throwing: on
/// 32-bit ARM no exception may pass through it.
class StructureReader : public QXmlDefaultHandler {
public:
    /// The line where the document is nested too deep, 0 when it is not.
    int read(const QString &text) {
        reportDocument(text, *this); // what is no XML, the load will refuse
        return lineTooDeep;
    }

    const Structure &structure() const { return followed; }

    void setDocumentLocator(QXmlLocator *place) override { locator = place; }

    bool startElement(const QString & /*namespaceUri*/, const QString &localName, const QString & /*qualifiedName*/,
                      const QXmlAttributes &attributes) override {
        if (followed.enter(localName, attributes.value(QStringLiteral("id"))))
            return true;
        lineTooDeep = locator->lineNumber();
        return false;
    }

    bool endElement(const QString & /*namespaceUri*/, const QString & /*localName*/,
                    const QString & /*qualifiedName*/) override {
        return followed.leave();
    }

private:
    Structure followed;
    QXmlLocator *locator = nullptr;
    int lineTooDeep = 0;
};

QT_WARNING_POP

} // namespace

Contents scanDocument(const QByteArray &bytes, const QString &text) {
    if (const auto contents = scanPlainDocument(bytes))
        return *contents;

    // counted as the applier will meet them: the engine's reader sees other entities and default attributes
    StructureReader reader;
    if (const int line = reader.read(text))
        throw atLine(tooDeep(), line);
    return {scanNames(bytes), reader.structure().entries(), reader.structure().unnamedEntries()};
}

Names scanNames(const QByteArray &bytes) {
    if (const auto contents = scanPlainDocument(bytes))
        return contents->names;

    QXmlStreamReader reader(bytes);
    NameCollector collector(reader);
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (++depth > maximumDepth)
                throw atLine(tooDeep(), reader.lineNumber());
            collector.addElement();
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::ProcessingInstruction:
            collector.addProcessingInstruction();
            break;
        default:
            break;
        }
    }
    return collector.names();
}

} // namespace quendar
