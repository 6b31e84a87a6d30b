// SPDX-License-Identifier: MIT
#include "tessaro/pendingchanges.h"

namespace tessaro {

namespace {

template <typename Paths>
bool hasUnder(const Paths &paths, const QString &path) {
    const auto [first, last] = below(paths, path);
    return first != last || paths.count(path) != 0;
}

/// The node that stands in @p directory, at @p path or above it.
QString entryAt(const QString &directory, const QString &path) {
    return path.left(path.indexOf(QLatin1Char('/'), directory.size() + 1));
}

} // namespace

const Node *PendingChanges::find(const QString &path) const {
    // most look-ups are for paths behind all that is made: answered without a search
    if (made.empty() || made.crbegin()->first < path)
        return nullptr;
    const auto found = made.find(path);
    return found == made.end() ? nullptr : &found->second;
}

bool PendingChanges::removes(const QString &path) const {
    if (removed.empty())
        return false;
    for (QString at = path; !at.isEmpty(); at = parentOf(at))
        if (removed.count(at) != 0)
            return true;
    return false;
}

bool PendingChanges::hides(const QString &path) const {
    return removes(path) || isBelowMadeKey(path);
}

bool PendingChanges::isBelowMadeKey(const QString &path) const {
    // a path that shares its directory with a made node has no made key above it, since that node has none
    if (made.empty() || areInOneDirectory(path, made.crbegin()->first))
        return false;
    // a path above another sorts before it, so the walk up can stop at the first made node
    const QString &first = made.cbegin()->first;
    for (QString at = parentOf(path); !at.isEmpty() && !(at < first); at = parentOf(at))
        if (const Node *const above = find(at))
            return above->isKey();
    return false;
}

bool PendingChanges::isAnyMadeBelow(const QString &path) const {
    if (made.empty() || made.crbegin()->first < path)
        return false;
    const auto next = made.upper_bound(path);
    if (next == made.end() || !next->first.startsWith(path))
        return false;
    const auto [first, last] = below(made, path); // between the two there may be "path!"
    return first != last;
}

bool PendingChanges::isAnyUnder(const QString &path) const {
    return hasUnder(removed, path) || hasUnder(made, path);
}

void PendingChanges::overlay(const QString &directory, Listing &entries) const {
    const auto [firstRemoved, lastRemoved] = below(removed, directory);
    for (auto path = firstRemoved; path != lastRemoved; ++path)
        entries.remove(*path); // nothing where it lies deeper
    const auto [firstMade, lastMade] = below(made, directory);
    for (auto node = firstMade; node != lastMade; ++node) {
        const QString entry = entryAt(directory, node->first);
        entries.insert(entry, entry == node->first ? node->second.kind : RegNodeDir);
    }
}

void PendingChanges::make(const QString &path, const Node &node) {
    made.insert_or_assign(made.cend(), path, node);
}

void PendingChanges::remove(const QString &path) {
    drop(path);
    if (!removes(path))
        removed.insert(path);
}

void PendingChanges::drop(const QString &path) {
    eraseUnder(made, path);
    eraseUnder(removed, path);
}

} // namespace tessaro
