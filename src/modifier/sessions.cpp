// SPDX-License-Identifier: MIT
#include "modifier/lumoconfigviewmodifier.h"
#include "report/warning.h"

void LumoConfigViewModifier::startSessionType(const QString &sessionType) {
    preexistingSessions = children(childKey(childKey(currentKey, sessionType), QStringLiteral("sessions"))).keys();
}

void LumoConfigViewModifier::startSession(const QXmlAttributes &attributes) {
    enterEntry(QStringLiteral("sessions"), attributes);
    if (client.contains(currentKey) != 0) {
        client.create(currentKey, RegTypeString);
        const int status = client.commit(currentKey);
        if (status != 0)
            warn({QLatin1String("an error occured while creating:"), currentKey, status});
    }
    preexistingSessions.removeAll(currentKey);
}

/// Deletes the sessions that the section did not name.
void LumoConfigViewModifier::endSessionType() {
    for (const QString &path : std::as_const(preexistingSessions)) {
        client.del(path);
        const int status = client.commit(path);
        if (status != 0)
            warn({QLatin1String("an error occured while deleting session:"), path, status});
    }
    preexistingSessions.clear();
}
