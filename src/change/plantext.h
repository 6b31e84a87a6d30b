// SPDX-License-Identifier: MIT
/// A plan as a person reads it.
#pragma once

#include "change/masking.h"
#include "planning/importplan.h"

#include <QtCore/QByteArray>

namespace quendar {

/// Lines in UTF-8, section by section; long texts are cut, and more than a screen of changes in a section is counted.
QByteArray planText(const ImportPlan &plan, const Masking &masking, bool isColoured);

} // namespace quendar
