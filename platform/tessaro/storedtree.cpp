#include "storedtree.h"

#include "path.h"

const Node *StoredTree::find(const QString &path) {
    walking = false;
    if (!changing) {
        dropOutdated();
    }
    return known(path);
}

const Node *StoredTree::findAgain(const QString &path) {
    const Node *const node = isCurrent(path) ? current->second.findAgain(path) : nullptr;
    return node ? node : find(path);
}

const Node *StoredTree::findListed(const QString &path) {
    const Node *const node = walking && isCurrent(path) ? current->second.findNext(path) : nullptr;
    return node ? node : find(path);
}

Listing StoredTree::children(const QString &directoryPath) {
    if (!changing) {
        dropOutdated();
    }
    walking = true;
    return directory(directoryPath).startWalk();
}

const Node *StoredTree::known(const QString &path) {
    if (!isCurrent(path)) {
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

/// Whether @p path would lie in the current directory.
bool StoredTree::isCurrent(const QString &path) const {
    return current && path.lastIndexOf(QLatin1Char('/')) == current->first.size() && path.startsWith(current->first);
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
}

StoredTree::Change::Change(StoredTree &changed) : tree(changed), transaction(changed.store.write()) {
    tree.dropOutdated();
    tree.changing = true;
}

StoredTree::Change::~Change() {
    if (tree.changing) {
        tree.clear();
        tree.changing = false;
    }
}

void StoredTree::Change::remove(const QString &path) {
    tree.store.remove(path);
    tree.clear();
    present.clear();
    wrote = true;
}

void StoredTree::Change::put(const QString &path, const Node &node) {
    const QString above = parentOf(path);
    if (above != present) {
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
    const auto siblings = tree.directories.find(above);
    if (siblings != tree.directories.end()) {
        siblings->second.put(path, node);
    }
}

void StoredTree::Change::commit() {
    transaction.commit();
    tree.changing = false;
    if (wrote) {
        ++tree.stamp; // as SQLite has just done in the file; another's commit meanwhile makes them differ
    }
}
