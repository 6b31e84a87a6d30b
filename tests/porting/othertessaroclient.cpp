// SPDX-License-Identifier: MIT
#include "othertessaro.h"

#include <QtCore/QSystemSemaphore>

TessaroClient::TessaroClient() = default;

TessaroClient::~TessaroClient() = default;

int TessaroClient::get(const QString &path, QMap<QString, _RegNodeType> &children, const _RegEntryParam & /*param*/,
                       const QString & /*last*/) {
    if (d->texts.contains(path))
        children.insert(d->texts.value(path), RegNodeValue);
    for (auto text = d->texts.cbegin(); text != d->texts.cend(); ++text) {
        if (!text.key().startsWith(path + QLatin1Char('/')))
            continue;
        const QString child = text.key().left(text.key().indexOf(QLatin1Char('/'), path.size() + 1));
        children.insert(child, child == text.key() ? RegNodeKey : RegNodeDir);
    }
    return children.isEmpty() ? 1 : 0;
}

int TessaroClient::set(const QString &path, const QString &value, const _RegEntryParam & /*param*/) {
    d->texts.insert(path, value);
    return 0;
}

int TessaroClient::commit(const QString & /*path*/) {
    d->save();
    return 0;
}

/// Applies at once: the section's path becomes the text of a key, for the test to see.
int TessaroClient::requestApply(const QString &section, const QString &trigger) {
    d->texts.insert(QStringLiteral("applied"), section);
    d->texts.insert(trigger, QStringLiteral("0"));
    return QSystemSemaphore(trigger, 0, QSystemSemaphore::Open).release() ? 0 : 1;
}

int TessaroClient::create(const QString & /*path*/, const _RegEntryType & /*type*/) {
    return 0; // a set makes the key
}

int TessaroClient::del(const QString &path) {
    return d->texts.remove(path) == 1 ? 0 : 1;
}

int TessaroClient::contains(const QString &path) {
    return d->texts.contains(path) || d->isDirectory(path) ? 0 : 1;
}

int TessaroClient::rollback(const QString & /*path*/) {
    return 0;
}
