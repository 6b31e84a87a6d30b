// SPDX-License-Identifier: MIT
#pragma once

#include "engine/names.h"

#include <QtCore/QStringList>

/// The names of the top-level sections of @p wanted that are not so in @p current, in document order, one for each
/// such section. Throws Error when a document cannot be loaded or the engine cannot hold the names of both.
QStringList changedSections(const NamedDocument &wanted, const NamedDocument &current);
