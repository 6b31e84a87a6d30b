// SPDX-License-Identifier: MIT
/// The library's edge: what is thrown within ends here as a status.
#pragma once

#include "tessaro/applyservices.h"
#include <tessaroclient.h>

class Tree;

/// A client's connection to the registry, opened by the first call that needs it.
class TessaroPrivate {
public:
    TessaroPrivate();
    ~TessaroPrivate();
    TessaroPrivate(const TessaroPrivate &) = delete;
    TessaroPrivate &operator=(const TessaroPrivate &) = delete;

    int contains(const QString &path) noexcept;
    int get(const QString &path, QString &value) noexcept;
    int list(const QString &path, QMap<QString, _RegNodeType> &children) noexcept;
    int create(const QString &path) noexcept;
    int set(const QString &path, const QString &value) noexcept;
    int del(const QString &path) noexcept;
    int commit(const QString &path) noexcept;
    int rollback(const QString &path) noexcept;

    /// 0 when the apply service was started; why it could not be is printed.
    int requestApply(const QString &section, const QString &trigger) noexcept;

private:
    /// Begins a call of it.
    Tree &registry();

    std::unique_ptr<Tree> opened;
    ApplyServices services;
};
