// SPDX-License-Identifier: MIT
#include "modifier/documentreader.h"

#include "document/saxreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "modifier/readerguard.h"

namespace quendar {

void applyDocument(const QString &text, LumoConfigViewModifier &applier) {
    ReaderGuard guard(applier);
    reportDocument(text, guard);
    guard.rethrow();
}

} // namespace quendar
