// SPDX-License-Identifier: MIT
#pragma once

#include "engine/names.h"

#include <QtCore/QByteArray>

/// A first look at a document, before the engine loads it: refuses with an Error, line included, what is nested too
/// deep or holds too many names. Returns the document's names. A document that cannot be read to its end is left to
/// the load, whose message says so better.
Names checkDocument(const QByteArray &document);
