// SPDX-License-Identifier: MIT
/// The registry view as a tree for the query engine.
#pragma once

#include "engine/names.h"
#include "registry/childrencache.h"
#include "registry/viewkey.h"

#include <QtCore/QHash>
#include <QtCore/QVector>
#include <QtXmlPatterns/QSimpleXmlNodeModel>

#include <memory>
#include <unordered_map>

namespace quendar {

/// Shows the settings in the registry to the query engine as a read-only XML tree:
///
///     root/lumo-config-view              <lumo-config-view>           DirectoryElement
///         display                            <display>                DirectoryElement
///             resolution = "1920x1080"           <resolution>         KeyElement
///                                                    1920x1080        KeyText
///
/// A node is the number of its key in `keys`, given out in the order in which keys are first seen, and its code; a
/// key's element and its text share the number. An entry named by a UUID is an element named `uuid-` and the UUID.
/// Children come in the order of their names. There is no document node, attribute or namespace.
///
/// Nothing is read before the engine walks there, and each path is read once. A read that fails throws TessaroError
/// out of the engine's call; a name that no element can bear, more names than the engine can hold, or more levels than
/// it should, throw Error.
class LumoConfigView : public QSimpleXmlNodeModel {
public:
    enum NodeCode { DirectoryElement = 1, KeyElement = 2, KeyText = 3 };

    /// Over a client of its own. The query that walks the tree must be built on @p namePool too.
    explicit LumoConfigView(const QXmlNamePool &namePool);

    /// Over @p registryClient, which must outlive the view.
    LumoConfigView(const QXmlNamePool &namePool, TessaroClient &registryClient);
    ~LumoConfigView() override;

    /// The element of the directory at @p key; reads nothing.
    QXmlNodeModelIndex indexForKey(const QString &key);

    /// The names of the elements that the engine has met.
    Names names() const;

    /// The paths of the sessions and printers that the engine has met.
    QSet<QString> entries() const;

    QUrl documentUri(const QXmlNodeModelIndex &node) const override;
    QXmlNodeModelIndex::NodeKind kind(const QXmlNodeModelIndex &node) const override;
    QXmlNodeModelIndex::DocumentOrder compareOrder(const QXmlNodeModelIndex &first,
                                                   const QXmlNodeModelIndex &second) const override;
    QXmlNodeModelIndex root(const QXmlNodeModelIndex &node) const override;
    QXmlName name(const QXmlNodeModelIndex &node) const override;
    QString stringValue(const QXmlNodeModelIndex &node) const override;
    QVariant typedValue(const QXmlNodeModelIndex &node) const override;

protected:
    QXmlNodeModelIndex nextFromSimpleAxis(SimpleAxis axis, const QXmlNodeModelIndex &node) const override;
    QVector<QXmlNodeModelIndex> attributes(const QXmlNodeModelIndex &node) const override;

private:
    /// Where a node stands in the listing of its directory.
    struct Place {
        const Children *listing = nullptr; // null: it was not met there yet
        Children::const_iterator entry;
    };

    QXmlNodeModelIndex nodeAt(QStringView directory, const Place &place) const;
    Place placeOf(const QXmlNodeModelIndex &origin) const;
    const ViewKey &keyOf(const QXmlNodeModelIndex &node) const;
    QString valueOf(const ViewKey &key) const;
    QXmlNodeModelIndex nodeFor(const ViewKey &key, int code) const;
    QXmlNodeModelIndex parent(const ViewKey &key) const;
    QXmlNodeModelIndex firstChild(const QString &key) const;
    QXmlNodeModelIndex sibling(const QXmlNodeModelIndex &origin, int delta) const;
    const Children &readChildren(const QString &path) const;

    const std::unique_ptr<TessaroClient> ownClient; // none where it was handed one
    TessaroClient &client;

    // filled while the engine walks, which it does through const calls
    mutable QVector<ViewKey> keys;
    mutable QHash<QString, int> numbers; // the position of each in `keys`
    mutable QVector<Place> places;       // of each, so that a step to a sibling searches for nothing
    mutable ChildrenCache childrenCache;
    mutable std::unordered_map<QStringView, QXmlName> elementNames; // by the names of the entries, which lie in `keys`
};

} // namespace quendar
