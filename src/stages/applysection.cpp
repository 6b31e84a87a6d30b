// SPDX-License-Identifier: MIT
#include "stages/applysection.h"

#include <tessaroclient.h>

#include <QtCore/QSystemSemaphore>
#include <QtCore/QUuid>

#include <optional>

namespace quendar {

namespace {

/// The key through which one section is handed over. It is made, and committed, before the request and is gone
/// after it, whatever became of it.
class ApplyKey {
public:
    ApplyKey(TessaroClient &owner, const QString &section, const QString &trigger) : client(owner), path(trigger) {
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

    QString text() const {
        QString value;
        client.get(path, value, RegParamValue, QStringLiteral(""));
        return value;
    }

    TessaroClient &client;
    const QString path;
};

} // namespace

QString newTrigger() {
    return QStringLiteral("tmp/applying/") + QUuid::createUuid().toString();
}

ApplyResult applySection(TessaroClient &client, const QString &sectionKey, const QString &trigger) {
    std::optional<QSystemSemaphore> done; // of a refused request, it goes after the key
    const ApplyKey key(client, sectionKey, trigger);
    done.emplace(key.path, 0, QSystemSemaphore::Create); // before the request: the service may release it at once
    const int status = client.requestApply(sectionKey, key.path);
    if (status != 0)
        return {status, {}};
    done->acquire();
    done.reset();
    return {0, key.text()};
}

void withdrawApply(TessaroClient &client, const QString &trigger) {
    if (client.contains(trigger) != 0)
        return;
    client.del(trigger);
    client.commit(trigger);
    const QSystemSemaphore owned(trigger, 0, QSystemSemaphore::Create); // its owner removes it
}

} // namespace quendar
