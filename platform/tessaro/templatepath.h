// SPDX-License-Identifier: MIT
/// Where the default content of new directories lies.
#pragma once

#include <QtCore/QString>

namespace tessaro {

/// Stands for a UUID in the names below `templates`.
inline const QLatin1String uuidPlaceholder("{UUID}");

/// Whether a directory of this name is filled from a template.
bool isUuid(const QString &name);

/// The template of @p path: `root/view/sessions/{0f1e2d3c-...}` has `templates/view/sessions/{UUID}`.
QString templatePath(const QString &path);

} // namespace tessaro
