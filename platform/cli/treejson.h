// SPDX-License-Identifier: MIT
/// The registry's tree as JSON: an object is a directory, a string is a key.
#pragma once

#include "tessaro/store.h"

#include <QtCore/QJsonObject>

namespace tessaro {

/// Reads the JSON form of a whole registry: `root`, and optionally `templates` and `tmp`. Throws `std::runtime_error`
/// for a text that is no JSON or does not say one tree.
QJsonObject parseTree(QByteArray text);

/// Puts the nodes of @p tree into @p directory, which may be the top.
void writeTree(Store &store, const QString &directory, const QJsonObject &tree);

/// The tree below @p directory, which may be the top.
QJsonObject readTree(Store &store, const QString &directory);

} // namespace tessaro
