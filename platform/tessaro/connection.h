// SPDX-License-Identifier: MIT
/// The library's edge: what is thrown within ends here as a status.
#pragma once

#include "tessaro/applyservices.h"
#include "tessaro/tessaroprivate.h"
#include "tessaro/tree.h"

#include <optional>

namespace tessaro {

/// A client's connection to the registry, opened by the first call that needs it.
class Connection final : public TessaroPrivate {
public:
    int contains(const QString &path) noexcept override;
    int get(const QString &path, QString &value) noexcept override;
    int list(const QString &path, Listing &children) noexcept override;
    int create(const QString &path) noexcept override;
    int set(const QString &path, const QString &value) noexcept override;
    int del(const QString &path) noexcept override;
    int commit(const QString &path) noexcept override;
    int rollback(const QString &path) noexcept override;

    /// 0 when the apply service was started; why it could not be is printed.
    int requestApply(const QString &section, const QString &trigger) noexcept override;

private:
    /// The tree as this call is to see it.
    Tree &registry();

    std::optional<Tree> opened;
    ApplyServices services;
};

} // namespace tessaro
