// SPDX-License-Identifier: MIT
#include "tessaro/committedtree.h"

#include "tessaro/path.h"

#include <algorithm>

namespace tessaro {

namespace {

/// Where the node at @p path stands among those of its directory, or would stand.
template <typename Nodes>
auto placeOf(Nodes &nodes, const QString &path) {
    const int nameAt = path.lastIndexOf(QLatin1Char('/')) + 1; // up to there all are alike
    const auto precedes = [nameAt](const Entry &entry, QStringView name) {
        return QStringView(entry.first).mid(nameAt) < name;
    };
    return std::lower_bound(nodes.begin(), nodes.end(), QStringView(path).mid(nameAt), precedes);
}

template <typename Nodes, typename Place>
bool isAt(const Nodes &nodes, Place place, const QString &path) {
    return place != nodes.end() && place->first == path;
}

} // namespace

void CommittedTree::refresh() {
    const Store::Stamp now = store.stamp();
    if (now != stamp)
        drop();
    stamp = now;
}

const Node *CommittedTree::find(const QString &path) {
    if (!recent || !isIn(path, recent->first)) {
        if (!isPath(path))
            return nullptr;
        directory(parentOf(path), DirectoryAlone);
    }
    const std::vector<Entry> &nodes = recent->second;
    const auto place = placeOf(nodes, path);
    return isAt(nodes, place, path) ? &place->second : nullptr;
}

const std::vector<Entry> &CommittedTree::list(const QString &path) {
    return directory(path, AllBelow).second;
}

CommittedTree::Directory &CommittedTree::directory(const QString &path, Extent extent) {
    auto known = directories.find(path);
    if (known == directories.end()) {
        read(path, extent);
        known = directories.find(path);
    }
    recent = &*known;
    return *known;
}

void CommittedTree::read(const QString &path, Extent extent) {
    if (changing) { // in the transaction of the change
        add(path, store.list(path), extent);
        return;
    }
    // the state that the transaction sees begins with its first read: a stamp taken before that may be an older one
    const SQLite::Transaction oneState = store.read();
    std::vector<Entry> nodes = store.list(path);
    refresh();
    add(path, std::move(nodes), extent);
}

void CommittedTree::add(const QString &path, std::vector<Entry> nodes, Extent extent) {
    const auto byPath = [](const Entry &a, const Entry &b) { return a.first < b.first; };
    if (!std::is_sorted(nodes.cbegin(), nodes.cend(), byPath)) // the file is in the order of UTF-8, not of UTF-16
        std::sort(nodes.begin(), nodes.end(), byPath);
    const auto added = directories.insert_or_assign(path, std::move(nodes)).first;
    if (extent == AllBelow)
        for (const auto &[nodePath, node] : added->second)
            if (!node.isKey())
                add(nodePath, store.list(nodePath), AllBelow);
}

void CommittedTree::drop() {
    directories.clear();
    recent = nullptr;
}

CommittedTree::Change::Change(CommittedTree &changed) : tree(changed), transaction(changed.store.write()) {
    tree.refresh();
    tree.changing = true;
}

CommittedTree::Change::~Change() {
    if (tree.changing) { // not committed: the copy is ahead of the file
        tree.drop();
        tree.changing = false;
    }
}

void CommittedTree::Change::remove(const QString &path) {
    if (tree.store.remove(path))
        wrote = true; // SQLite counts no commit that changes nothing

    tree.recent = nullptr; // may be among those that go
    eraseUnder(tree.directories, path);
    const auto directory = tree.directories.find(parentOf(path));
    if (directory == tree.directories.end())
        return;
    std::vector<Entry> &nodes = directory->second;
    const auto place = placeOf(nodes, path);
    if (isAt(nodes, place, path))
        nodes.erase(place);
}

void CommittedTree::Change::put(const QString &path, const Node &node) {
    const Node *const old = tree.find(path);
    if (old && *old == node)
        return;
    const QString parent = parentOf(path);
    if (!old && !parent.isEmpty())
        put(parent, directoryNode());
    if (old && node.isKey() && !old->isKey())
        remove(path);
    tree.store.put(path, node);
    wrote = true;
    std::vector<Entry> &nodes = tree.directory(parent, DirectoryAlone).second;
    const auto place = placeOf(nodes, path);
    if (isAt(nodes, place, path))
        place->second = node;
    else
        nodes.emplace(place, path, node);
}

void CommittedTree::Change::commit() {
    transaction.commit();
    tree.changing = false;
    if (wrote)
        tree.stamp.countOwnCommit(); // where another client has committed right after, the file's differs
}

} // namespace tessaro
