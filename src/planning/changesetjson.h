// SPDX-License-Identifier: MIT
/// Change sets as JSON.
#pragma once

#include "planning/changeset.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonValue>

#include <optional>

namespace quendar {

/// null where nothing stands, {} for a directory, a string for a key.
QJsonValue toJson(const Node &node);

/// With all texts as they are: a list of path, before, after.
QJsonArray toJson(const ChangeSet &changes);

/// What `toJson` has made of a change set; nothing for anything else.
std::optional<ChangeSet> changeSetFrom(const QJsonArray &json);

} // namespace quendar
