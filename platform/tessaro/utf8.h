/// Text as the registry stores it.
#pragma once

#include <QtCore/QString>

/// Decodes UTF-8 and keeps a U+FEFF at the start, which `QString::fromUtf8` takes for a mark and drops. What is not
/// UTF-8 comes back as U+FFFD.
QString decodeUtf8(const char *text, int size);
