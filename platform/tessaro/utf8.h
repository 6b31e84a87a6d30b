// SPDX-License-Identifier: MIT
/// Text as the registry stores it.
#pragma once

#include <QtCore/QString>

namespace tessaro {

/// Decodes UTF-8 and keeps a U+FEFF at the start, which `QString::fromUtf8` takes for a mark and drops. What is not
/// UTF-8 comes back as U+FFFD.
QString decodeUtf8(const char *text, int size);

/// @p before with the decoded text behind it, in memory of just that size.
QString appendUtf8(const QString &before, const char *text, int size);

} // namespace tessaro
