// SPDX-License-Identifier: MIT
#include "modifier/lumoconfigviewmodifier.h"

namespace quendar {

void LumoConfigViewModifier::startSessionType(const QString &sessionType) {
    const ViewKey sessions = childKey(childKey(currentKey, sessionType), QStringLiteral("sessions"));
    preexistingSessions = entriesOf(sessions, children(sessions));
}

void LumoConfigViewModifier::startSession(const QXmlAttributes &attributes) {
    enterEntry(QStringLiteral("sessions"), attributes);
    if (client.contains(currentKey) != 0) {
        client.create(currentKey, RegTypeString);
        const int status = client.commit(currentKey);
        if (status != 0)
            warn({Warning::SessionNotCreated, currentKey, {}, status});
    }
    preexistingSessions.removeAll(currentKey);
}

/// Deletes the sessions that the section did not name.
void LumoConfigViewModifier::endSessionType() {
    for (const QString &path : std::as_const(preexistingSessions)) {
        client.del(path);
        const int status = client.commit(path);
        if (status != 0)
            warn({Warning::SessionNotDeleted, path, {}, status});
    }
    preexistingSessions.clear();
}

} // namespace quendar
