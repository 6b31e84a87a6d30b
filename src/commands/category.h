// SPDX-License-Identifier: MIT
/// The categories of settings.
#pragma once

#include <QtCore/QString>

namespace quendar {

/// Throws Error for any category of settings but "all".
void requireSupportedCategory(const QString &category);

} // namespace quendar
