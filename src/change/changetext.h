// SPDX-License-Identifier: MIT
/// A change as a person reads of it.
#pragma once

#include "trial/changestatus.h"

#include <QtCore/QByteArray>

namespace quendar {

/// Lines in UTF-8: how it stands, each section's result, what was left alone.
QByteArray changeText(const ChangeStatus &status);

/// One line: id, when, who, what, how it ended.
QByteArray changeLine(const ChangeRecord &record);

} // namespace quendar
