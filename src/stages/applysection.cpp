// SPDX-License-Identifier: MIT
#include "commands/setcommand.h"
#include <tessaroclient.h>

#include <QtCore/QSystemSemaphore>
#include <QtCore/QUuid>

namespace {

/// The result when the apply service reports anything but success.
constexpr int notApplied = 6;

/// The key through which one section is handed over. It is made, and committed, before the request and is gone
/// after it, whatever became of it.
class ApplyKey {
public:
    ApplyKey(TessaroClient &owner, const QString &section)
        : client(owner), path(QStringLiteral("tmp/applying/") + QUuid::createUuid().toString()) {
        client.create(path, RegTypeString);
        client.set(path, section, RegParamValue);
        client.commit(path);
    }

    ~ApplyKey() {
        client.del(path);
        client.commit(path);
    }

    ApplyKey(const ApplyKey &) = delete;
    ApplyKey &operator=(const ApplyKey &) = delete;

    QString result() const {
        QString value;
        client.get(path, value, RegParamValue, QStringLiteral(""));
        return value;
    }

    TessaroClient &client;
    const QString path;
};

/// Requests the apply and waits for its end; returns the request's status. The semaphore is there before the request
/// is made, since the service may release it at any time after.
int requestAndWait(const ApplyKey &key, const QString &section) {
    QSystemSemaphore done(key.path, 0, QSystemSemaphore::Create);
    const int status = key.client.requestApply(section, key.path);
    if (status == 0)
        done.acquire();
    return status;
}

} // namespace

int SetCommand::applySection(TessaroClient &client, const QString &sectionKey) {
    const ApplyKey key(client, sectionKey);
    const int status = requestAndWait(key, sectionKey);
    if (status != 0)
        return status;
    return key.result() == QLatin1String("0") ? 0 : notApplied;
}
