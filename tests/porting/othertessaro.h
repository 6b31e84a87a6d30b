// SPDX-License-Identifier: MIT
/// What the two libraries of another make share.
#pragma once

#include <tessaroclient.h>

/// The keys and their texts, kept in a file of lines "path=text", which OTHER_REGISTRY names.
class TessaroPrivate {
public:
    TessaroPrivate();

    void save() const;

    /// Whether something stands below @p path.
    bool isDirectory(const QString &path) const;

    QMap<QString, QString> texts;
};
