// SPDX-License-Identifier: MIT
/// A plan as a person reads it.
#pragma once

#include "change/masking.h"
#include "planning/importplan.h"

#include <QtCore/QByteArray>

namespace quendar {

/// "3 changed, 7 made"; empty where there are none.
QString countsText(const SettingCounts &counts);

/// Lines in UTF-8, section by section; long texts are cut, and more than a screen of changes in a section is counted.
/// @p open is the id of a change that waits, or empty.
QByteArray planText(const ImportPlan &plan, const Masking &masking, const QString &open, bool isColoured);

} // namespace quendar
