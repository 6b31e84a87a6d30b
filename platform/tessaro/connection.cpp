// SPDX-License-Identifier: MIT
#include "tessaro/connection.h"

#include "tessaro/registryfile.h"

#include <exception>

namespace tessaro {

namespace {

/// The status that @p call returns, or @p failure when it throws.
template <typename Call>
int guarded(Status failure, Call call) noexcept {
    try {
        return call();
    } catch (const std::exception &) {
        return failure;
    }
}

} // namespace

Tree &Connection::registry() {
    if (!opened)
        opened.emplace(registryFile());
    opened->beginCall();
    return *opened;
}

int Connection::contains(const QString &path) noexcept {
    return guarded(
        Unavailable, [&] { return registry().contains(path); });
}

int Connection::get(const QString &path, QString &value) noexcept {
    return guarded(
        Unavailable, [&] { return registry().get(path, value); });
}

int Connection::list(const QString &path, QMap<QString, _RegNodeType> &children) noexcept {
    return guarded(
        Unavailable, [&] { return registry().list(path, children); });
}

int Connection::create(const QString &path) noexcept {
    return guarded(
        Unavailable, [&] { return registry().create(path); });
}

int Connection::set(const QString &path, const QString &value) noexcept {
    return guarded(
        Unavailable, [&] { return registry().set(path, value); });
}

int Connection::del(const QString &path) noexcept {
    return guarded(
        Unavailable, [&] { return registry().del(path); });
}

int Connection::commit(const QString &path) noexcept {
    return guarded(
        CommitFailed, [&] { return registry().commit(path); });
}

int Connection::rollback(const QString &path) noexcept {
    return guarded(
        Unavailable, [&] { return opened ? opened->rollback(path) : Success; });
}

int Connection::requestApply(const QString &section, const QString &trigger) noexcept {
    return guarded(
        Unavailable,
        [&] { return registry().isCommitted(trigger, section) ? services.start(section, trigger) : ApplyRefused; });
}

} // namespace tessaro
