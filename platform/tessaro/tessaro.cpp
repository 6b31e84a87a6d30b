// SPDX-License-Identifier: MIT
#include "tessaro/registryfile.h"
#include "tessaro/tessaroprivate.h"
#include "tessaro/tree.h"

#include <exception>

namespace {

template <typename Call>
int guarded(Status failure, Call call) noexcept {
    try {
        return call();
    } catch (const std::exception &) {
        return failure;
    }
}

} // namespace

TessaroPrivate::TessaroPrivate() = default;

TessaroPrivate::~TessaroPrivate() = default;

Tree &TessaroPrivate::registry() {
    if (!opened)
        opened = std::make_unique<Tree>(registryFile());
    opened->beginCall();
    return *opened;
}

int TessaroPrivate::contains(const QString &path) noexcept {
    return guarded(
        Unavailable, [&] { return registry().contains(path); });
}

int TessaroPrivate::get(const QString &path, QString &value) noexcept {
    return guarded(
        Unavailable, [&] { return registry().get(path, value); });
}

int TessaroPrivate::list(const QString &path, QMap<QString, _RegNodeType> &children) noexcept {
    return guarded(
        Unavailable, [&] { return registry().list(path, children); });
}

int TessaroPrivate::create(const QString &path) noexcept {
    return guarded(
        Unavailable, [&] { return registry().create(path); });
}

int TessaroPrivate::set(const QString &path, const QString &value) noexcept {
    return guarded(
        Unavailable, [&] { return registry().set(path, value); });
}

int TessaroPrivate::del(const QString &path) noexcept {
    return guarded(
        Unavailable, [&] { return registry().del(path); });
}

int TessaroPrivate::commit(const QString &path) noexcept {
    return guarded(
        CommitFailed, [&] { return registry().commit(path); });
}

int TessaroPrivate::rollback(const QString &path) noexcept {
    return guarded(
        Unavailable, [&] { return opened ? opened->rollback(path) : Success; });
}

int TessaroPrivate::requestApply(const QString &section, const QString &trigger) noexcept {
    return guarded(
        Unavailable,
        [&] { return registry().isCommitted(trigger, section) ? services.start(section, trigger) : ApplyRefused; });
}

Tessaro::Tessaro() : d(std::make_unique<TessaroPrivate>()) {}

Tessaro::~Tessaro() = default;

int Tessaro::get(const QString &path, QString &value, const _RegEntryParam & /*param*/, const QString & /*last*/) {
    return d->get(path, value);
}
