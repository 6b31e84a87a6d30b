// SPDX-License-Identifier: MIT
#include "tessaro/storedtree.h"

#include "tessaro/path.h"

const Node *StoredTree::find(const QString &path) {
    look();
    const Node *const node = known(path);
    beginWalk();
    return node;
}

const Node *StoredTree::findNext(const QString &path) {
    const Node *const node = walked ? walked->findNext(path) : nullptr;
    return node ? node : find(path);
}

const Node *StoredTree::findAgain(const QString &path) {
    const Node *const node = walked ? walked->findAgain(path) : nullptr;
    return node ? node : findNext(path);
}

Listing StoredTree::children(const QString &directoryPath) {
    look();
    Listing nodes = directory(directoryPath, AllBelow).list();
    beginWalk();
    return nodes;
}

const Node *StoredTree::known(const QString &path) {
    if (!current || !isIn(path, current->first)) {
        if (!isPath(path))
            return nullptr;
        directory(parentOf(path), DirectoryAlone);
    }
    return current->second.find(path);
}

/// The directory at @p path, which is the current one from here on. If it is not known yet, @p extent is read.
Directory &StoredTree::directory(const QString &path, Extent extent) {
    auto listed = directories.find(path);
    if (listed == directories.end()) {
        read(path, extent);
        listed = directories.find(path);
    }
    current = &*listed;
    return current->second;
}

void StoredTree::read(const QString &path, Extent extent) {
    if (changing) { // in whose transaction this is
        directories.merge(stored(path, extent));
        return;
    }
    const SQLite::Transaction oneState = store.read();
    Directories listed = stored(path, extent);
    dropOutdated(); // others may have committed since the look
    directories.merge(listed);
}

/// The directory at @p path as it is in the file, with all below it where @p extent says so.
StoredTree::Directories StoredTree::stored(const QString &path, Extent extent) {
    Directories listed;
    QStringList paths(path);
    for (int i = 0; i < paths.size(); ++i) {
        if (listed.count(paths.at(i)) != 0)
            continue; // a damaged file: two names that cannot be decoded are one
        const auto at = listed.emplace(paths.at(i), Directory(store.list(paths.at(i)))).first;
        if (extent == AllBelow)
            paths += at->second.directories();
    }
    return listed;
}

/// Through the directory that was looked into just now.
void StoredTree::beginWalk() {
    walked = changing || !current ? nullptr : &current->second;
}

/// Once in a call is enough; and within a change nobody else commits.
void StoredTree::look() {
    if (!looked && !changing) {
        dropOutdated();
        looked = true;
    }
}

void StoredTree::dropOutdated() {
    const Store::Stamp now = store.stamp();
    if (now != stamp) {
        clear();
        stamp = now;
    }
}

void StoredTree::clear() {
    directories.clear();
    current = nullptr;
    walked = nullptr;
}

/// Forgets the node at @p path and all below it.
void StoredTree::forget(const QString &path) {
    current = nullptr;
    walked = nullptr;
    const QString within = path + QLatin1Char('/');
    for (auto listed = directories.begin(); listed != directories.end();) {
        const bool isGone = listed->first == path || listed->first.startsWith(within);
        listed = isGone ? directories.erase(listed) : std::next(listed);
    }
    const auto above = directories.find(parentOf(path));
    if (above != directories.end())
        above->second.erase(path);
}

StoredTree::Change::Change(StoredTree &changed) : tree(changed), transaction(changed.store.write()) {
    tree.dropOutdated();
    tree.walked = nullptr;
    tree.changing = true;
}

StoredTree::Change::~Change() {
    if (tree.changing) {
        tree.clear();
        tree.changing = false;
    }
}

void StoredTree::Change::remove(const QString &path) {
    if (tree.store.remove(path))
        wrote = true; // SQLite counts no commit that changes nothing
    present.clear();
    tree.forget(path);
}

void StoredTree::Change::put(const QString &path, const Node &node) {
    if (!isIn(path, present)) {
        const QString above = parentOf(path);
        const Node *const parent = tree.known(above);
        if (!above.isEmpty() && (!parent || parent->isKey()))
            put(above, directoryNode());
        present = above;
    }
    const Node *const old = tree.known(path);
    if (old && *old == node)
        return;
    if (old && node.isKey() && !old->isKey())
        remove(path);
    tree.store.put(path, node);
    wrote = true;
    if (tree.current) // the directory that holds it, unless that was forgotten just now
        tree.current->second.put(path, node);
}

void StoredTree::Change::commit() {
    transaction.commit();
    tree.changing = false;
    if (wrote)
        ++tree.stamp; // as SQLite has just done in the file; another's commit meanwhile makes them differ
}
