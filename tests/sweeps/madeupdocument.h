// SPDX-License-Identifier: MIT
/// Documents made up at random.
#pragma once

#include "sweeps/sweep.h"

#include <QtCore/QByteArray>

/// An exported document, edited at random: as people do, and as they should not.
QByteArray editedDocument(const QByteArray &document, Sweep &sweep);
