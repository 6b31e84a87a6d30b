// SPDX-License-Identifier: MIT
#include "view/lumoconfigview.h"

#include "engine/limits.h"
#include "registry/viewpaths.h"

#include <QtCore/QUrl>
#include <QtCore/QVariant>

#include <iterator>

namespace quendar {

LumoConfigView::LumoConfigView(const QXmlNamePool &namePool)
    : QSimpleXmlNodeModel(namePool), ownClient(std::make_unique<TessaroClient>()), client(*ownClient) {}

LumoConfigView::LumoConfigView(const QXmlNamePool &namePool, TessaroClient &registryClient)
    : QSimpleXmlNodeModel(namePool), client(registryClient) {}

LumoConfigView::~LumoConfigView() = default;

QXmlNodeModelIndex LumoConfigView::indexForKey(const QString &key) {
    return nodeFor(key, DirectoryElement);
}

Names LumoConfigView::names() const {
    Names all;
    for (const auto &[entry, name] : elementNames)
        all.local.insert(name.localName(namePool()));
    return all;
}

QSet<QString> LumoConfigView::entries() const {
    QSet<QString> paths;
    for (const ViewKey &key : std::as_const(keys)) {
        const QStringView directory = parentIn(key);
        if (directory.endsWith(QLatin1String("/sessions")) || directory.endsWith(QLatin1String("/printers")))
            paths.insert(key);
    }
    return paths;
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
    const QStringView entry = nameIn(keyOf(node));
    const auto known = elementNames.find(entry);
    if (known != elementNames.end())
        return known->second;

    const QString local = elementName(entry.toString());
    // the serialiser writes any other as it is, and what is read back is another document
    if (!QXmlName::isNCName(local))
        throw notExportable();
    const auto made = makeName(namePool(), local);
    if (!made)
        throw tooManyNames();
    return elementNames.emplace(entry, *made).first->second;
}

QString LumoConfigView::stringValue(const QXmlNodeModelIndex &node) const {
    return node.additionalData() == KeyText ? valueOf(keyOf(node)) : QSimpleXmlNodeModel::stringValue(node);
}

QVariant LumoConfigView::typedValue(const QXmlNodeModelIndex &node) const {
    return valueOf(keyOf(node));
}

QXmlNodeModelIndex LumoConfigView::nextFromSimpleAxis(SimpleAxis axis, const QXmlNodeModelIndex &node) const {
    const auto code = node.additionalData();
    switch (axis) {
    case Parent:
        return code == KeyText ? createIndex(node.data(), KeyElement) : parent(keyOf(node));
    case FirstChild:
        if (code == DirectoryElement)
            return firstChild(keyOf(node));
        return code == KeyElement ? createIndex(node.data(), KeyText) : QXmlNodeModelIndex();
    case PreviousSibling:
        return sibling(node, -1);
    case NextSibling:
        return sibling(node, +1);
    }
    return {};
}

QVector<QXmlNodeModelIndex> LumoConfigView::attributes(const QXmlNodeModelIndex & /*node*/) const {
    return {};
}

const ViewKey &LumoConfigView::keyOf(const QXmlNodeModelIndex &node) const {
    return keys.at(static_cast<int>(node.data()));
}

QString LumoConfigView::valueOf(const ViewKey &key) const {
    const Children &values = readChildren(key);
    return values.size() == 1 ? values.firstKey() : QString();
}

QXmlNodeModelIndex LumoConfigView::nodeFor(const ViewKey &key, int code) const {
    const auto known = numbers.constFind(key);
    if (known != numbers.constEnd())
        return createIndex(qint64(*known), code);
    numbers.insert(key, keys.size());
    keys.append(key);
    places.append(Place());
    return createIndex(qint64(keys.size() - 1), code);
}

/// The node of what is listed for @p directory at @p place, if that is an entry and of a kind that has one.
QXmlNodeModelIndex LumoConfigView::nodeAt(QStringView directory, const Place &place) const {
    const auto &listed = place.entry;
    if (!isEntryOf(directory, listed.key()) || (*listed != RegNodeDir && *listed != RegNodeKey))
        return {};
    const QXmlNodeModelIndex node = nodeFor(listed.key(), *listed == RegNodeDir ? DirectoryElement : KeyElement);
    places[static_cast<int>(node.data())] = place;
    return node;
}

/// The end of the listing where its directory does not list it; no listing without a directory.
LumoConfigView::Place LumoConfigView::placeOf(const QXmlNodeModelIndex &origin) const {
    const Place known = places.at(static_cast<int>(origin.data()));
    if (known.listing)
        return known;
    const QXmlNodeModelIndex directory = nextFromSimpleAxis(Parent, origin);
    if (directory.isNull())
        return {};
    const Children &listing = readChildren(keyOf(directory));
    return {&listing, listing.constFind(keyOf(origin))};
}

QXmlNodeModelIndex LumoConfigView::parent(const ViewKey &key) const {
    return key.contains(QLatin1Char('/')) ? nodeFor(key.parent(), DirectoryElement) : QXmlNodeModelIndex();
}

QXmlNodeModelIndex LumoConfigView::firstChild(const QString &key) const {
    const Children &listing = readChildren(key);
    if (listing.isEmpty())
        return {};
    // the view's root, at level 1, has one "/"
    if (key.count(QLatin1Char('/')) >= maximumDepth)
        throw tooDeep();
    return nodeAt(key, {&listing, listing.cbegin()});
}

QXmlNodeModelIndex LumoConfigView::sibling(const QXmlNodeModelIndex &origin, int delta) const {
    if (origin.additionalData() == KeyText)
        return {};
    const auto [listing, self] = placeOf(origin);
    if (!listing || listing->isEmpty())
        return {};

    const ViewKey key = keyOf(origin); // a copy: `keys` grows
    const QStringView directory = parentIn(key);
    if (self == listing->cend()) // as if it stood before the first
        return delta < 0 ? QXmlNodeModelIndex() : nodeAt(directory, {listing, listing->cbegin()});
    const auto last = delta < 0 ? listing->cbegin() : std::prev(listing->cend());
    return self == last ? QXmlNodeModelIndex() : nodeAt(directory, {listing, std::next(self, delta)});
}

const Children &LumoConfigView::readChildren(const QString &path) const {
    return quendar::readChildren(client, childrenCache, path);
}

} // namespace quendar
