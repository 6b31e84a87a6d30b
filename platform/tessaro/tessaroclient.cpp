// SPDX-License-Identifier: MIT
#include "tessaro/tessaroprivate.h"

TessaroClient::TessaroClient() = default;

TessaroClient::~TessaroClient() = default;

int TessaroClient::get(const QString &path, QMap<QString, _RegNodeType> &children, const _RegEntryParam & /*param*/,
                       const QString & /*last*/) {
    return d->list(path, children);
}

int TessaroClient::set(const QString &path, const QString &value, const _RegEntryParam & /*param*/) {
    return d->set(path, value);
}

int TessaroClient::commit(const QString &path) {
    return d->commit(path);
}

int TessaroClient::requestApply(const QString &section, const QString &trigger) {
    return d->requestApply(section, trigger);
}

int TessaroClient::create(const QString &path, const _RegEntryType & /*type*/) {
    return d->create(path);
}

int TessaroClient::del(const QString &path) {
    return d->del(path);
}

int TessaroClient::contains(const QString &path) {
    return d->contains(path);
}

int TessaroClient::rollback(const QString &path) {
    return d->rollback(path);
}
