/// What one client has changed and not yet committed.
#pragma once

#include "node.h"

#include <map>
#include <set>

/// An overlay on the committed tree: subtrees that are gone, and nodes that stand where nothing else is looked at.
/// Removals come first, so a node made at or below a removed path is there, and alone.
class PendingChanges {
public:
    bool isEmpty() const { return removed.empty() && made.empty(); }

    /// The node made at @p path; null when there is none.
    const Node *find(const QString &path) const;

    /// Whether what is committed at @p path is removed, by itself or with a directory above it.
    bool hides(const QString &path) const;

    /// Lays what is pending in @p directory over its committed @p entries.
    void overlay(const QString &directory, Listing &entries) const;

    void make(const QString &path, const Node &node);

    /// Removes the subtree at @p path, made and committed.
    void remove(const QString &path);

    /// Forgets what is pending at @p path and below it.
    void drop(const QString &path);

    /// Forgets that the directory at @p path was made; what is pending in it stays.
    void dropNode(const QString &path);

    /// What is pending at @p path and below it.
    PendingChanges under(const QString &path) const;

    const std::set<QString> &removals() const { return removed; }

    /// The nodes made, by directory; a directory precedes those in it.
    const std::map<QString, Listing> &additions() const { return made; }

private:
    std::set<QString> removed; ///< none of them lies below another
    std::map<QString, Listing> made;
};
