// SPDX-License-Identifier: MIT
/// What stands behind the interface's classes.
#pragma once

#include <tessaroclient.h>

/// The calls of the interface, without the arguments that make no difference. Abstract, so that libtessaroclient
/// reaches what libtessaro has made without a symbol of it.
class TessaroPrivate {
public:
    TessaroPrivate() = default;
    virtual ~TessaroPrivate() = default;
    TessaroPrivate(const TessaroPrivate &) = delete;
    TessaroPrivate &operator=(const TessaroPrivate &) = delete;

    virtual int contains(const QString &path) = 0;
    virtual int get(const QString &path, QString &value) = 0;
    virtual int list(const QString &path, QMap<QString, _RegNodeType> &children) = 0;
    virtual int create(const QString &path) = 0;
    virtual int set(const QString &path, const QString &value) = 0;
    virtual int del(const QString &path) = 0;
    virtual int commit(const QString &path) = 0;
    virtual int rollback(const QString &path) = 0;
    virtual int requestApply(const QString &section, const QString &trigger) = 0;
};
