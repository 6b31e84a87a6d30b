// SPDX-License-Identifier: MIT
/// What one client has changed and not yet committed.
#pragma once

#include "tessaro/node.h"
#include "tessaro/path.h"

#include <algorithm>
#include <map>
#include <set>

namespace tessaro {

/// An overlay on the committed tree: removed subtrees, and made nodes. Removals come first, so a node made at or below
/// a removed path is there, and alone.
///
/// What is pending stands, whatever others make of the places around it: below a made key nothing is there, and above a
/// made node there are directories. So nothing may be made below a made key.
class PendingChanges {
public:
    /// The node made at @p path; null when there is none. Good until the next change.
    const Node *find(const QString &path) const;

    /// Whether what is committed at @p path is removed, by itself or with a directory above it.
    bool removes(const QString &path) const;

    /// Whether what is committed at @p path is out of sight: removed, or below a made key.
    bool hides(const QString &path) const;

    /// Whether anything is made below @p path, which is a directory then.
    bool isAnyMadeBelow(const QString &path) const;

    /// Whether anything is pending at @p path or below it.
    bool isAnyUnder(const QString &path) const;

    /// Lays what is pending in @p directory over its committed @p entries.
    void overlay(const QString &directory, Listing &entries) const;

    void make(const QString &path, const Node &node);

    /// Removes the subtree at @p path, made and committed.
    void remove(const QString &path);

    /// Forgets what is pending at @p path and below it.
    void drop(const QString &path);

    /// Forgets that the directory at @p path was made; what is pending in it stays.
    void dropNode(const QString &path) { made.erase(path); }

    /// Calls @p visit with the path of each removal at @p path or below it.
    template <typename Visit>
    void eachRemoval(const QString &path, Visit visit) const {
        eachUnder(removed, path, visit);
    }

    /// Calls @p visit with path and node of each that was made at @p path or below it; a directory precedes what is in
    /// it.
    template <typename Visit>
    void eachMade(const QString &path, Visit visit) const {
        eachUnder(
            made, path, [&visit](const auto &entry) { visit(entry.first, entry.second); });
    }

private:
    bool isBelowMadeKey(const QString &path) const;

    template <typename Paths, typename Visit>
    static void eachUnder(const Paths &paths, const QString &path, Visit visit) {
        const auto self = paths.find(path);
        if (self != paths.end())
            visit(*self);
        const auto [first, last] = below(paths, path);
        std::for_each(first, last, visit);
    }

    std::set<QString> removed; ///< none of them lies below another
    std::map<QString, Node> made;
};

} // namespace tessaro
