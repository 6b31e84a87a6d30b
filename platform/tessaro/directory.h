// SPDX-License-Identifier: MIT
/// The nodes of one directory.
#pragma once

#include "tessaro/node.h"

#include <QtCore/QStringList>

#include <vector>

/// Kept in the order of their paths, in which they are mostly asked for as well: the node behind the one found last is
/// at hand, any other is searched for.
class Directory {
public:
    /// From entries in any order.
    explicit Directory(std::vector<Entry> read);

    /// The node at @p path; null when it is not here. Good until the next change.
    const Node *find(const QString &path);

    /// The node at @p path, if it is the one behind the one found last.
    const Node *findNext(const QString &path);

    /// The node at @p path, if it is the one found last.
    const Node *findAgain(const QString &path) const;

    /// All nodes, of which the first is the next.
    Listing list();

    /// The paths of those nodes that are directories themselves.
    QStringList directories() const;

    /// Before others, moves all that follow.
    void put(const QString &path, const Node &node);

    void erase(const QString &path);

private:
    std::vector<Entry> entries;
    std::size_t next = 0; ///< behind the one found last
};
