// SPDX-License-Identifier: MIT
#include "view/lumoconfigview.h"

#include "engine/limits.h"
#include "engine/names.h"
#include "registry/viewpaths.h"
#include "report/error.h"

#include <QtCore/QUrl>
#include <QtCore/QUuid>
#include <QtCore/QVariant>

#include <algorithm>
#include <iterator>

namespace {

/// What an entry is called in XML, where a name cannot hold braces.
QString elementName(const QString &entry) {
    if (QUuid(entry).isNull())
        return entry;
    return QStringLiteral("uuid-") + QString(entry).remove(QLatin1Char('{')).remove(QLatin1Char('}'));
}

int numberOf(const QXmlNodeModelIndex &node) {
    return static_cast<int>(node.data());
}

} // namespace

LumoConfigView::LumoConfigView(const QXmlNamePool &namePool) : QSimpleXmlNodeModel(namePool) {}

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
    const auto made = makeName(namePool(), elementName(entry.toString()));
    if (!made)
        throw Error(tooManyNames());
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
        return code == KeyText ? createIndex(node.data(), KeyElement) : parent(node);
    case FirstChild:
        if (code == DirectoryElement)
            return firstChild(node);
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
    return keys.at(numberOf(node));
}

QString LumoConfigView::valueOf(const ViewKey &key) const {
    const Children &values = readChildren(key);
    return values.size() == 1 ? values.firstKey() : QString();
}

/// The node of the path. Only few are asked for in this way.
QXmlNodeModelIndex LumoConfigView::nodeFor(const ViewKey &key, int code) const {
    int number = keys.indexOf(key);
    if (number < 0) {
        number = addNode(key, Place());
        unplaced.append(number);
    }
    return createIndex(qint64(number), code);
}

QXmlNodeModelIndex LumoConfigView::parent(const QXmlNodeModelIndex &origin) const {
    if (const Listing *const listing = places.at(numberOf(origin)).listing)
        return createIndex(qint64(listing->directory), DirectoryElement);
    const ViewKey &key = keyOf(origin);
    return key.contains(QLatin1Char('/')) ? nodeFor(key.parent(), DirectoryElement) : QXmlNodeModelIndex();
}

QXmlNodeModelIndex LumoConfigView::firstChild(const QXmlNodeModelIndex &origin) const {
    Listing &listing = listingOf(numberOf(origin));
    if (listing.entries.isEmpty())
        return {};
    // the view's root, at level 1, has one "/"
    if (keyOf(origin).count(QLatin1Char('/')) >= maximumDepth)
        throw Error(tooDeep());
    return nodeAt({&listing, 0, listing.entries.cbegin()});
}

QXmlNodeModelIndex LumoConfigView::sibling(const QXmlNodeModelIndex &origin, int delta) const {
    if (origin.additionalData() == KeyText)
        return {};
    const Place place = placeOf(origin);
    if (!place.listing)
        return {};
    const Children &entries = place.listing->entries;
    const int position = place.position + delta;
    if (position < 0 || position >= entries.size())
        return {};
    return nodeAt({place.listing, position, place.position < 0 ? entries.cbegin() : std::next(place.entry, delta)});
}

/// The node of the entry at @p place, if it is of a kind that has one.
QXmlNodeModelIndex LumoConfigView::nodeAt(const Place &place) const {
    if (*place.entry != RegNodeDir && *place.entry != RegNodeKey)
        return {};
    int &number = place.listing->numbers[static_cast<std::size_t>(place.position)];
    if (number < 0) {
        const QString &path = place.entry.key();
        number = takeUnplaced(path);
        if (number < 0)
            number = addNode(path, place);
        else
            places[number] = place;
    }
    return createIndex(qint64(number), *place.entry == RegNodeDir ? DirectoryElement : KeyElement);
}

int LumoConfigView::addNode(const ViewKey &key, const Place &place) const {
    keys.append(key);
    places.append(place);
    return keys.size() - 1;
}

/// The number of the node at @p path if it was asked for by that and not met in a listing, otherwise -1. After this it
/// counts as met.
int LumoConfigView::takeUnplaced(const QString &path) const {
    const auto found =
        std::find_if(unplaced.begin(), unplaced.end(), [&](int number) { return keys.at(number) == path; });
    if (found == unplaced.end())
        return -1;
    const int number = *found;
    unplaced.erase(found);
    return number;
}

/// Where @p origin stands in the listing of its parent; no listing when it has no parent.
Place LumoConfigView::placeOf(const QXmlNodeModelIndex &origin) const {
    const Place known = places.at(numberOf(origin));
    if (known.listing)
        return known;
    const QXmlNodeModelIndex directory = nextFromSimpleAxis(Parent, origin);
    if (directory.isNull())
        return {};

    Listing &listing = listingOf(numberOf(directory));
    const auto entry = listing.entries.constFind(keyOf(origin));
    if (entry == listing.entries.cend())
        return {&listing, -1, entry};
    const Place place{&listing, static_cast<int>(std::distance(listing.entries.cbegin(), entry)), entry};
    nodeAt(place); // notes that it stands there
    return place;
}

Listing &LumoConfigView::listingOf(int directory) const {
    const auto known = listings.find(directory);
    if (known != listings.end())
        return known->second;
    const Children &entries = readChildren(keys.at(directory));
    const Listing listing{directory, entries, std::vector<int>(static_cast<std::size_t>(entries.size()), -1)};
    return listings.emplace(directory, listing).first->second;
}

const Children &LumoConfigView::readChildren(const QString &path) const {
    return ::readChildren(client, childrenCache, path);
}
