// SPDX-License-Identifier: MIT
#include "tessaro/connection.h"

Tessaro::Tessaro() : d(std::make_unique<tessaro::Connection>()) {}

Tessaro::~Tessaro() = default;

int Tessaro::get(const QString &path, QString &value, const _RegEntryParam & /*param*/, const QString & /*last*/) {
    return d->get(path, value);
}
