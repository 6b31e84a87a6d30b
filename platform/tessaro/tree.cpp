// SPDX-License-Identifier: MIT
#include "tessaro/tree.h"

#include "tessaro/path.h"
#include "tessaro/templatepath.h"

#include <QtCore/QScopeGuard>
#include <QtCore/QStringList>

#include <set>

namespace tessaro {

namespace {

/// The status for a path at which no node was found.
Status absent(const QString &path) {
    return isPath(path) ? NotFound : WrongKind;
}

/// Stands for every directory that is there only for what is pending below it.
const Node impliedDirectory = directoryNode();

} // namespace

Status Tree::contains(const QString &path) {
    return find(path) ? Success : absent(path);
}

Status Tree::get(const QString &path, QString &value) {
    const Node *const node = find(path);
    if (!node)
        return absent(path);
    if (!node->isKey())
        return WrongKind;
    value = node->value;
    return Success;
}

Status Tree::list(const QString &path, Listing &entries) {
    const Node *const node = find(path);
    if (!node)
        return absent(path);
    if (node->isKey())
        entries.insert(node->value, RegNodeValue);
    else
        entries = children(path);
    return Success;
}

Status Tree::create(const QString &path) {
    if (!isPath(path))
        return WrongKind;
    QStringList missing;
    const Node *above = nullptr;
    for (QString at = path; !at.isEmpty() && !above; at = parentOf(at)) {
        above = find(at);
        if (!above)
            missing.prepend(at);
    }
    if (missing.isEmpty() || (above && above->isKey()))
        return WrongKind;
    // all of them before any is filled: a template may hold a key where the path goes on
    for (const QString &directory : std::as_const(missing))
        pending.make(directory, directoryNode());
    for (const QString &directory : std::as_const(missing))
        if (isUuid(nameOf(directory)))
            fill(directory, templatePath(directory));
    return Success;
}

/// Copies into @p directory what the template @p source holds and @p directory does not.
void Tree::fill(const QString &directory, const QString &source) {
    const Listing defaults = children(source);
    for (auto entry = defaults.cbegin(); entry != defaults.cend(); ++entry) {
        const QString name = nameOf(entry.key());
        const Node *const found = find(entry.key());
        if (name == uuidPlaceholder || !found)
            continue; // a template of its own, or gone meanwhile
        const Node node = *found;
        const QString path = childOf(directory, name);
        const Node *const there = find(path);
        const bool isKey = there ? there->isKey() : node.isKey();
        if (!there)
            pending.make(path, node);
        if (!isKey && !node.isKey())
            fill(path, entry.key());
    }
}

/// Makes anew, with what their templates hold, the directories named by a UUID that others have removed or replaced by
/// a key, and in which something is pending at or below @p path. Returns what was pending before, if anything was made.
std::optional<PendingChanges> Tree::refill(const QString &path) {
    std::set<QString> directories;
    QString last;
    pending.eachMade(path, [&](const QString &made, const Node & /*node*/) {
        if (isIn(made, last)) // as most are
            return;
        last = parentOf(made);
        for (QString at = last; !at.isEmpty() && directories.insert(at).second;)
            at = parentOf(at);
    });
    std::optional<PendingChanges> before;
    for (const QString &directory : directories) {
        const Node *const old = committed.find(directory);
        if (isUuid(nameOf(directory)) && !pending.find(directory) && (!old || old->isKey())) {
            if (!before)
                before = pending;
            pending.make(directory, directoryNode());
            fill(directory, templatePath(directory));
        }
    }
    return before;
}

Status Tree::set(const QString &path, const QString &value) {
    if (!value.isValidUtf16())
        return WrongKind;
    const Node *const node = find(path);
    if (!node) {
        if (!isPath(path))
            return WrongKind;
        const QString directory = parentOf(path);
        const Node *const above = find(directory);
        if (!directory.isEmpty() && (!above || above->isKey()))
            return NotFound;
    } else if (!node->isKey() && !isNewAndEmpty(path)) {
        return WrongKind;
    }
    pending.make(path, keyNode(value));
    return Success;
}

bool Tree::isNewAndEmpty(const QString &path) {
    return pending.find(path) != nullptr && children(path).isEmpty();
}

Status Tree::del(const QString &path) {
    const Status present = contains(path);
    if (present == Success)
        pending.remove(path);
    return present;
}

Status Tree::commit(const QString &path) {
    if (!isPath(path))
        return WrongKind;
    const bool isRemovedFromAbove = pending.removes(parentOf(path));
    if (!isRemovedFromAbove && !pending.isAnyUnder(path))
        return Success;
    CommittedTree::Change change(committed);
    const std::optional<PendingChanges> unfilled = refill(path);
    auto putBack = qScopeGuard([&] {
        if (unfilled)
            pending = *unfilled;
    });
    pending.eachRemoval(path, [&](const QString &removed) { change.remove(removed); });
    if (isRemovedFromAbove)
        change.remove(path);
    bool anyMade = false;
    pending.eachMade(path, [&](const QString &made, const Node &node) {
        change.put(made, node);
        anyMade = true;
    });
    change.commit();
    putBack.dismiss();
    if (isRemovedFromAbove)
        return Success; // all stays pending, so that it outlives the commit of the removal above
    pending.drop(path);
    for (QString at = parentOf(path); anyMade && !at.isEmpty(); at = parentOf(at))
        pending.dropNode(at); // made with the path
    return Success;
}

Status Tree::rollback(const QString &path) {
    if (path.isEmpty()) {
        pending = PendingChanges();
        return Success;
    }
    if (!isPath(path))
        return WrongKind;
    pending.drop(path);
    return Success;
}

bool Tree::isCommitted(const QString &path, const QString &value) {
    const Node *const node = committed.find(path);
    return node && *node == keyNode(value);
}

const Node *Tree::find(const QString &path) {
    if (const Node *const made = pending.find(path))
        return made;
    const Node *const node = pending.hides(path) ? nullptr : committed.find(path);
    // others may have removed a directory in which something is pending, or have put a key in its place
    return (!node || node->isKey()) && pending.isAnyMadeBelow(path) ? &impliedDirectory : node;
}

Listing Tree::children(const QString &directory) {
    Listing entries;
    if (!pending.hides(directory))
        for (const auto &[path, node] : committed.list(directory))
            entries.insert(entries.cend(), path, node.kind);
    pending.overlay(directory, entries);
    return entries;
}

} // namespace tessaro
