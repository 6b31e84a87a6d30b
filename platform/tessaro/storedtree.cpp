#include "storedtree.h"

#include "path.h"

std::optional<Node> StoredTree::find(const QString &path) {
    const Listing &siblings = entries(parentOf(path));
    const auto found = siblings.constFind(nameOf(path));
    return found == siblings.constEnd() ? std::nullopt : std::make_optional(*found);
}

Listing &StoredTree::entries(const QString &directory) {
    if (!changing) {
        dropOutdated();
    }
    const auto known = cached.find(directory);
    if (known != cached.end()) {
        return known->second;
    }
    const Store::Directory read = store.list(directory);
    if (!changing && read.stamp != stamp) {
        cached.clear();
        stamp = read.stamp;
    }
    return cached.emplace(directory, read.entries).first->second;
}

void StoredTree::dropOutdated() {
    const Store::Stamp now = store.stamp();
    if (now != stamp) {
        cached.clear();
        stamp = now;
    }
}

StoredTree::Change::Change(StoredTree &changed) : tree(changed), transaction(changed.store.write()) {
    tree.dropOutdated();
    tree.changing = true;
}

StoredTree::Change::~Change() {
    if (tree.changing) {
        tree.cached.clear();
        tree.changing = false;
    }
}

void StoredTree::Change::remove(const QString &path) {
    tree.store.remove(path);
    wrote = true;
    const QString within = path + QLatin1Char('/');
    for (auto directory = tree.cached.begin(); directory != tree.cached.end();) {
        const bool isGone = directory->first == path || directory->first.startsWith(within);
        directory = isGone ? tree.cached.erase(directory) : std::next(directory);
    }
    const auto siblings = tree.cached.find(parentOf(path));
    if (siblings != tree.cached.end()) {
        siblings->second.remove(nameOf(path));
    }
}

void StoredTree::Change::put(const QString &directory, const Listing &nodes) {
    makeDirectory(directory);
    for (auto node = nodes.cbegin(); node != nodes.cend(); ++node) {
        put(directory, node.key(), *node);
    }
}

void StoredTree::Change::put(const QString &directory, const QString &name, const Node &node) {
    Listing &present = tree.entries(directory);
    const auto old = present.constFind(name);
    if (old != present.constEnd()) {
        if (*old == node) {
            return;
        }
        if (node.isKey() && !old->isKey()) {
            remove(childOf(directory, name));
        }
    }
    tree.store.put(directory, name, node);
    wrote = true;
    present.insert(name, node);
}

void StoredTree::Change::makeDirectory(const QString &path) {
    if (path.isEmpty()) {
        return;
    }
    const std::optional<Node> present = tree.find(path);
    if (!present || present->isKey()) {
        makeDirectory(parentOf(path));
        put(parentOf(path), nameOf(path), directoryNode());
    }
}

void StoredTree::Change::commit() {
    transaction.commit();
    tree.changing = false;
    if (wrote) {
        ++tree.stamp; // as SQLite has just done in the file; another's commit meanwhile makes them differ
    }
}
