// SPDX-License-Identifier: MIT
/// What stands at a path of the registry, as a value.
#pragma once

#include <QtCore/QString>

#include <functional>

class TessaroClient;

namespace quendar {

struct Node {
    enum Kind { Absent, Directory, Key };

    Kind kind = Absent;
    QString text; ///< a key's

    bool isAbsent() const { return kind == Absent; }
    bool isDirectory() const { return kind == Directory; }
    bool isKey() const { return kind == Key; }
};

inline bool operator==(const Node &first, const Node &second) {
    return first.kind == second.kind && first.text == second.text;
}
inline bool operator!=(const Node &first, const Node &second) {
    return !(first == second);
}

/// What @p client sees at @p path. Throws TessaroError when the registry fails: a failure never counts as absence.
Node readNode(TessaroClient &client, const QString &path);

/// Whether anything stands there; a large directory is not listed for it. Throws likewise.
bool isStanding(TessaroClient &client, const QString &path);

/// Has @p node stand at @p path, pending in @p client. What stands there and is of another kind goes first, with all
/// below it; directories above that are missing are made, and a new one may come with defaults. Throws TessaroError
/// when the registry fails or refuses.
void writeNode(TessaroClient &client, const QString &path, const Node &node);

/// Calls @p visit with path and node of what @p client sees at @p path and below it, a directory before what is in it.
/// Nothing is visited where nothing stands. Throws TessaroError.
void visitNodes(TessaroClient &client, const QString &path,
                const std::function<void(const QString &path, const Node &node)> &visit);

} // namespace quendar
