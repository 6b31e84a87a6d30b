#include "pendingchanges.h"

#include "path.h"

const Node *PendingChanges::find(const QString &path) const {
    if (made.empty()) {
        return nullptr;
    }
    const auto siblings = made.find(parentOf(path));
    if (siblings == made.end()) {
        return nullptr;
    }
    const auto found = siblings->second.constFind(nameOf(path));
    return found == siblings->second.constEnd() ? nullptr : &*found;
}

bool PendingChanges::hides(const QString &path) const {
    if (removed.empty()) {
        return false;
    }
    for (QString at = path; !at.isEmpty(); at = parentOf(at)) {
        if (removed.count(at) != 0) {
            return true;
        }
    }
    return false;
}

void PendingChanges::overlay(const QString &directory, Listing &entries) const {
    const auto [first, last] = below(removed, directory);
    for (auto path = first; path != last; ++path) {
        if (parentOf(*path) == directory) {
            entries.remove(nameOf(*path));
        }
    }
    const auto nodes = made.find(directory);
    if (nodes != made.end()) {
        for (auto node = nodes->second.cbegin(); node != nodes->second.cend(); ++node) {
            entries.insert(node.key(), *node);
        }
    }
}

void PendingChanges::make(const QString &path, const Node &node) {
    made[parentOf(path)].insert(nameOf(path), node);
}

void PendingChanges::remove(const QString &path) {
    drop(path);
    if (!hides(path)) {
        removed.insert(path);
    }
}

void PendingChanges::drop(const QString &path) {
    const auto [firstMade, lastMade] = below(made, path);
    made.erase(firstMade, lastMade);
    made.erase(path);
    dropNode(path);
    const auto [firstRemoved, lastRemoved] = below(removed, path);
    removed.erase(firstRemoved, lastRemoved);
    removed.erase(path);
}

void PendingChanges::dropNode(const QString &path) {
    const auto siblings = made.find(parentOf(path));
    if (siblings != made.end()) {
        siblings->second.remove(nameOf(path));
        if (siblings->second.isEmpty()) {
            made.erase(siblings);
        }
    }
}

PendingChanges PendingChanges::under(const QString &path) const {
    PendingChanges part;
    const auto [firstRemoved, lastRemoved] = below(removed, path);
    part.removed.insert(firstRemoved, lastRemoved);
    if (removed.count(path) != 0) {
        part.removed.insert(path);
    }
    const auto [firstMade, lastMade] = below(made, path);
    part.made.insert(firstMade, lastMade);
    const auto children = made.find(path);
    if (children != made.end()) {
        part.made.insert(*children);
    }
    if (const Node *const node = find(path)) {
        part.make(path, *node);
    }
    return part;
}
