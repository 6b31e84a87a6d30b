#include "storedtree.h"

#include "path.h"

const Node *StoredTree::find(const QString &path) {
    if (!changing) {
        dropOutdated();
    }
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
    if (!changing) {
        dropOutdated();
    }
    Listing nodes = directory(directoryPath).list();
    beginWalk();
    return nodes;
}

const Node *StoredTree::known(const QString &path) {
    if (!current || !isIn(path, current->first)) {
        if (!isPath(path)) {
            return nullptr;
        }
        directory(parentOf(path));
    }
    return current->second.find(path);
}

/// The directory at @p path, which is the current one from here on.
Directory &StoredTree::directory(const QString &path) {
    auto listed = directories.find(path);
    if (listed == directories.end()) {
        Store::Listed read = store.list(path);
        if (!changing && read.stamp != stamp) {
            clear();
            stamp = read.stamp;
        }
        listed = directories.emplace(path, Directory(std::move(read.entries))).first;
    }
    current = &*listed;
    return current->second;
}

/// Through the directory that was looked into just now.
void StoredTree::beginWalk() {
    walked = changing || !current ? nullptr : &current->second;
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
    if (above != directories.end()) {
        above->second.erase(path);
    }
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
    if (tree.store.remove(path)) {
        wrote = true; // SQLite counts no commit that changes nothing
    }
    present.clear();
    tree.forget(path);
}

void StoredTree::Change::put(const QString &path, const Node &node) {
    if (!isIn(path, present)) {
        const QString above = parentOf(path);
        const Node *const parent = tree.known(above);
        if (!above.isEmpty() && (!parent || parent->isKey())) {
            put(above, directoryNode());
        }
        present = above;
    }
    const Node *const old = tree.known(path);
    if (old && *old == node) {
        return;
    }
    if (old && node.isKey() && !old->isKey()) {
        remove(path);
    }
    tree.store.put(path, node);
    wrote = true;
    if (tree.current) { // the directory that holds it, unless that was forgotten just now
        tree.current->second.put(path, node);
    }
}

void StoredTree::Change::commit() {
    transaction.commit();
    tree.changing = false;
    if (wrote) {
        ++tree.stamp; // as SQLite has just done in the file; another's commit meanwhile makes them differ
    }
}
