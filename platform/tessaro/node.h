// SPDX-License-Identifier: MIT
/// What stands at one place of the registry's tree.
#pragma once

#include <tessaroclient.h>

#include <utility>

namespace tessaro {

struct Node {
    _RegNodeType kind;
    QString value; ///< a key's text; of no meaning in a directory

    bool isKey() const { return kind == RegNodeKey; }
};

inline bool operator==(const Node &a, const Node &b) {
    return a.kind == b.kind && a.value == b.value;
}

inline Node directoryNode() {
    return {RegNodeDir, QString()};
}

inline Node keyNode(const QString &value) {
    return {RegNodeKey, value};
}

/// A node with its path.
using Entry = std::pair<QString, Node>;

/// The kinds of a directory's nodes by their paths, as a client is handed them.
using Listing = QMap<QString, _RegNodeType>;

} // namespace tessaro
