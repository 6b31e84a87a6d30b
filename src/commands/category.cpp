// SPDX-License-Identifier: MIT
#include "commands/category.h"

#include "report/error.h"

namespace quendar {

void requireSupportedCategory(const QString &category) {
    if (category != QLatin1String("all"))
        throw Error(QStringLiteral("unsupported setting category: %1").arg(category));
}

} // namespace quendar
