#include "tree.h"

#include "path.h"
#include "templatepath.h"

#include <QtCore/QStringList>

Status Tree::contains(const QString &path) {
    if (!isPath(path)) {
        return WrongKind;
    }
    return find(path) ? Success : NotFound;
}

Status Tree::get(const QString &path, QString &value) {
    if (!isPath(path)) {
        return WrongKind;
    }
    const std::optional<Node> node = find(path);
    if (!node) {
        return NotFound;
    }
    if (!node->isKey()) {
        return WrongKind;
    }
    value = node->value;
    return Success;
}

Status Tree::list(const QString &path, QMap<QString, _RegNodeType> &entries) {
    if (!isPath(path)) {
        return WrongKind;
    }
    const std::optional<Node> node = find(path);
    if (!node) {
        return NotFound;
    }
    if (node->isKey()) {
        entries.insert(node->value, RegNodeValue);
        return Success;
    }
    const Listing nodes = children(path);
    for (auto child = nodes.cbegin(); child != nodes.cend(); ++child) {
        entries.insert(entries.cend(), childOf(path, child.key()), child->kind);
    }
    return Success;
}

Status Tree::create(const QString &path) {
    if (!isPath(path)) {
        return WrongKind;
    }
    QStringList missing;
    std::optional<Node> above;
    for (QString at = path; !at.isEmpty() && !above; at = parentOf(at)) {
        above = find(at);
        if (!above) {
            missing.prepend(at);
        }
    }
    if (missing.isEmpty() || (above && above->isKey())) {
        return WrongKind;
    }
    for (const QString &directory : std::as_const(missing)) {
        pending.make(directory, directoryNode());
    }
    for (const QString &directory : std::as_const(missing)) {
        if (isUuid(nameOf(directory))) {
            fill(directory, templatePath(directory));
        }
    }
    return Success;
}

void Tree::fill(const QString &directory, const QString &source) {
    const Listing present = children(directory);
    const Listing defaults = children(source);
    for (auto node = defaults.cbegin(); node != defaults.cend(); ++node) {
        if (node.key() == uuidPlaceholder) {
            continue; // a template of its own
        }
        const QString path = childOf(directory, node.key());
        if (!present.contains(node.key())) {
            pending.make(path, *node);
        }
        if (!node->isKey()) {
            fill(path, childOf(source, node.key()));
        }
    }
}

/// Makes the directories named by a UUID that others have removed from under @p due as they were made at first: with
/// what their templates hold.
void Tree::refill(const PendingChanges &due) {
    for (const auto &[directory, nodes] : due.additions()) {
        for (QString at = directory; !at.isEmpty(); at = parentOf(at)) {
            if (isUuid(nameOf(at)) && !find(at)) {
                pending.make(at, directoryNode());
                fill(at, templatePath(at));
            }
        }
    }
}

Status Tree::set(const QString &path, const QString &value) {
    if (!isPath(path) || !value.isValidUtf16()) {
        return WrongKind;
    }
    const std::optional<Node> node = find(path);
    if (!node) {
        const QString directory = parentOf(path);
        const std::optional<Node> above = directory.isEmpty() ? directoryNode() : find(directory);
        if (!above || above->isKey()) {
            return NotFound;
        }
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
    if (present == Success) {
        pending.remove(path);
    }
    return present;
}

Status Tree::commit(const QString &path) {
    if (!isPath(path)) {
        return WrongKind;
    }
    if (pending.under(path).isEmpty()) {
        return Success;
    }
    const bool hiddenFromAbove = pending.hides(parentOf(path));
    StoredTree::Change change(stored);
    refill(pending.under(path));
    const PendingChanges due = pending.under(path);
    for (const QString &removed : due.removals()) {
        change.remove(removed);
    }
    if (hiddenFromAbove) {
        change.remove(path);
    }
    for (const auto &[directory, nodes] : due.additions()) {
        change.put(directory, nodes);
    }
    change.commit();
    if (hiddenFromAbove) {
        return Success; // the removal above is still to come, and all this is to outlive it
    }
    pending.drop(path);
    if (!due.additions().empty()) {
        for (QString at = parentOf(path); !at.isEmpty(); at = parentOf(at)) {
            pending.dropNode(at); // made with the path
        }
    }
    return Success;
}

Status Tree::rollback(const QString &path) {
    if (path.isEmpty()) {
        pending = PendingChanges();
        return Success;
    }
    if (!isPath(path)) {
        return WrongKind;
    }
    pending.drop(path);
    return Success;
}

bool Tree::isCommitted(const QString &path, const QString &value) {
    const std::optional<Node> node = isPath(path) ? stored.find(path) : std::nullopt;
    return node == keyNode(value);
}

std::optional<Node> Tree::find(const QString &path) {
    if (const Node *const made = pending.find(path)) {
        return *made;
    }
    return pending.hides(path) ? std::nullopt : stored.find(path);
}

Listing Tree::children(const QString &directory) {
    Listing nodes = pending.hides(directory) ? Listing() : stored.children(directory);
    pending.overlay(directory, nodes);
    return nodes;
}
