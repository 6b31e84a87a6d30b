// SPDX-License-Identifier: MIT
#include "tessaro/pendingchanges.h"

namespace {

template <typename Paths>
bool hasUnder(const Paths &paths, const QString &path) {
    const auto [first, last] = below(paths, path);
    return first != last || paths.count(path) != 0;
}

} // namespace

const Node *PendingChanges::find(const QString &path) const {
    // changes come in the order of the paths more often than not
    if (made.empty() || made.crbegin()->first < path)
        return nullptr;
    const auto found = made.find(path);
    return found == made.end() ? nullptr : &found->second;
}

bool PendingChanges::hides(const QString &path) const {
    if (removed.empty())
        return false;
    for (QString at = path; !at.isEmpty(); at = parentOf(at))
        if (removed.count(at) != 0)
            return true;
    return false;
}

bool PendingChanges::isAnyUnder(const QString &path) const {
    return hasUnder(removed, path) || hasUnder(made, path);
}

void PendingChanges::overlay(const QString &directory, Listing &entries) const {
    const auto [firstRemoved, lastRemoved] = below(removed, directory);
    for (auto path = firstRemoved; path != lastRemoved; ++path)
        entries.remove(*path); // nothing where it lies deeper
    const auto [firstMade, lastMade] = below(made, directory);
    for (auto node = firstMade; node != lastMade; ++node)
        if (parentOf(node->first) == directory)
            entries.insert(node->first, node->second.kind);
}

void PendingChanges::make(const QString &path, const Node &node) {
    made.insert_or_assign(made.cend(), path, node);
}

void PendingChanges::remove(const QString &path) {
    drop(path);
    if (!hides(path))
        removed.insert(path);
}

void PendingChanges::drop(const QString &path) {
    eraseUnder(made, path);
    eraseUnder(removed, path);
}
