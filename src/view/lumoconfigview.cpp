#include "view/lumoconfigview.h"

#include "commands/error.h"
#include "engine/limits.h"
#include "engine/names.h"
#include "registry/viewpaths.h"

#include <QtCore/QUrl>
#include <QtCore/QUuid>
#include <QtCore/QVariant>

#include <iterator>

namespace {

/// What an entry is called in XML, where a name cannot hold braces.
QString elementName(const QString &entry) {
    if (QUuid(entry).isNull())
        return entry;
    return QStringLiteral("uuid-") + QString(entry).remove(QLatin1Char('{')).remove(QLatin1Char('}'));
}

} // namespace

LumoConfigView::LumoConfigView(const QXmlNamePool &namePool) : QSimpleXmlNodeModel(namePool) {}

LumoConfigView::~LumoConfigView() = default;

QXmlNodeModelIndex LumoConfigView::indexForKey(const QString &key) {
    return nodeFor(key, DirectoryElement);
}

Names LumoConfigView::names() const {
    Names all;
    for (const QXmlName &name : elementNames)
        all.local.insert(name.localName(namePool()));
    return all;
}

QUrl LumoConfigView::documentUri(const QXmlNodeModelIndex & /*node*/) const {
    return QUrl(QStringLiteral("TODO:///"));
}

QXmlNodeModelIndex::NodeKind LumoConfigView::kind(const QXmlNodeModelIndex &node) const {
    return node.additionalData() == KeyText ? QXmlNodeModelIndex::Text : QXmlNodeModelIndex::Element;
}

QXmlNodeModelIndex::DocumentOrder LumoConfigView::compareOrder(const QXmlNodeModelIndex & /*first*/,
                                                               const QXmlNodeModelIndex & /*second*/) const {
    return QXmlNodeModelIndex::Precedes;
}

QXmlNodeModelIndex LumoConfigView::root(const QXmlNodeModelIndex & /*node*/) const {
    return nodeFor(viewRoot(), DirectoryElement);
}

QXmlName LumoConfigView::name(const QXmlNodeModelIndex &node) const {
    const QString entry = keyOf(node).name();
    const auto known = elementNames.constFind(entry);
    if (known != elementNames.constEnd())
        return *known;
    const auto made = makeName(namePool(), elementName(entry));
    if (!made)
        throw Error(tooManyNames());
    return *elementNames.insert(entry, *made);
}

QString LumoConfigView::stringValue(const QXmlNodeModelIndex &node) const {
    return node.additionalData() == KeyText ? typedValue(node).toString() : QSimpleXmlNodeModel::stringValue(node);
}

QVariant LumoConfigView::typedValue(const QXmlNodeModelIndex &node) const {
    const Children &values = readChildren(keyOf(node));
    return values.size() == 1 ? values.firstKey() : QString();
}

QXmlNodeModelIndex LumoConfigView::nextFromSimpleAxis(SimpleAxis axis, const QXmlNodeModelIndex &node) const {
    const ViewKey key = keyOf(node);
    const auto code = node.additionalData();
    switch (axis) {
    case Parent:
        if (code == KeyText)
            return nodeFor(key, KeyElement);
        return key.contains(QLatin1Char('/')) ? nodeFor(key.parent(), DirectoryElement) : QXmlNodeModelIndex();
    case FirstChild:
        if (code == DirectoryElement)
            return firstChild(key);
        return code == KeyElement ? nodeFor(key, KeyText) : QXmlNodeModelIndex();
    case PreviousSibling:
        return sibling(node, key, -1);
    case NextSibling:
        return sibling(node, key, +1);
    }
    return {};
}

QVector<QXmlNodeModelIndex> LumoConfigView::attributes(const QXmlNodeModelIndex & /*node*/) const {
    return {};
}

const ViewKey &LumoConfigView::keyOf(const QXmlNodeModelIndex &node) const {
    return keys.at(static_cast<int>(node.data()));
}

QXmlNodeModelIndex LumoConfigView::nodeFor(const ViewKey &key, int code) const {
    const int number = index.numberFor(key);
    if (number == keys.size()) // it is new to both
        keys.append(key);
    return createIndex(static_cast<qint64>(number), code);
}

/// The node of the entry at @p place, if it is of a kind that has one.
QXmlNodeModelIndex LumoConfigView::nodeAt(const NodeIndex::Place &place) const {
    if (*place.entry != RegNodeDir && *place.entry != RegNodeKey)
        return {};
    const QXmlNodeModelIndex node =
        nodeFor(place.entry.key(), *place.entry == RegNodeDir ? DirectoryElement : KeyElement);
    index.setPlace(static_cast<int>(node.data()), place);
    return node;
}

QXmlNodeModelIndex LumoConfigView::firstChild(const ViewKey &key) const {
    const Children &children = readChildren(key);
    if (children.isEmpty())
        return {};
    // the view's root, at level 1, has one "/"
    if (key.count(QLatin1Char('/')) >= maximumDepth)
        throw Error(tooDeep());
    return nodeAt({&children, children.cbegin()});
}

QXmlNodeModelIndex LumoConfigView::sibling(const QXmlNodeModelIndex &origin, const ViewKey &key, int delta) const {
    if (origin.additionalData() == KeyText)
        return {};
    NodeIndex::Place place = placeOf(origin, key);
    if (!place.listing)
        return {};

    const auto begin = place.listing->cbegin();
    const auto end = place.listing->cend();
    if (place.entry == end) { // not listed: it counts as standing before the first
        place.entry = delta > 0 ? begin : end;
    } else if (delta < 0 && place.entry == begin) {
        place.entry = end;
    } else {
        std::advance(place.entry, delta);
    }
    return place.entry == end ? QXmlNodeModelIndex() : nodeAt(place);
}

/// Where the listing of @p key's parent holds it; no listing when it has no parent.
NodeIndex::Place LumoConfigView::placeOf(const QXmlNodeModelIndex &origin, const ViewKey &key) const {
    const NodeIndex::Place known = index.place(static_cast<int>(origin.data()));
    if (known.listing)
        return known;
    const QXmlNodeModelIndex parent = nextFromSimpleAxis(Parent, origin);
    if (parent.isNull())
        return {};
    const Children &listing = readChildren(keyOf(parent));
    return {&listing, listing.constFind(key)};
}

const Children &LumoConfigView::readChildren(const QString &path) const {
    return ::readChildren(client, childrenCache, path);
}
