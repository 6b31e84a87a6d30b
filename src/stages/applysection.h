// SPDX-License-Identifier: MIT
/// The hand-over of one section to the apply service.
#pragma once

#include <QtCore/QString>

class TessaroClient;

namespace quendar {

struct ApplyResult {
    int status;     ///< of the request; not 0 when the service has refused it
    QString answer; ///< what the service has left: "0" for success; empty when it was refused

    bool isApplied() const { return status == 0 && answer == QLatin1String("0"); }
};

/// The path of a key through which a section can be handed over; another each time.
QString newTrigger();

/// Hands the section at @p sectionKey to the apply service through the key at @p trigger, and waits, without a limit,
/// until it is done.
ApplyResult applySection(TessaroClient &client, const QString &sectionKey, const QString &trigger = newTrigger());

/// Removes what a process that was ended in `applySection` has left of @p trigger, be it nothing.
void withdrawApply(TessaroClient &client, const QString &trigger);

} // namespace quendar
