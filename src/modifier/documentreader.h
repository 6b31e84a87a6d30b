// SPDX-License-Identifier: MIT
/// The way of a document to the applier.
#pragma once

#include <QtCore/QString>

namespace quendar {

class LumoConfigViewModifier;

/// Has @p applier apply a document, from its decoded text. What the applier throws is thrown from here.
void applyDocument(const QString &text, LumoConfigViewModifier &applier);

} // namespace quendar
