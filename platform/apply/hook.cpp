// SPDX-License-Identifier: MIT
#include "apply/hook.h"

#include <initializer_list>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaro {

namespace {

QByteArray hookFolder() {
    const QByteArray named = qgetenv("TESSARO_APPLY_DIR");
    return named.isEmpty() ? QByteArrayLiteral("/etc/tessaro/apply.d") : named;
}

bool isProgram(const QByteArray &file) {
    struct stat found {};
    return stat(file.constData(), &found) == 0 && S_ISREG(found.st_mode) && access(file.constData(), X_OK) == 0;
}

} // namespace

QByteArray hookFor(const QString &section) {
    // without a "/" in it, the name cannot lead out of the folder but to a folder, which is no program
    const QByteArray name = section.mid(section.lastIndexOf(QLatin1Char('/')) + 1).toUtf8();
    for (const QByteArray &candidate : {name, QByteArrayLiteral("default")}) {
        const QByteArray file = hookFolder() + '/' + candidate;
        if (isProgram(file))
            return file;
    }
    return {};
}

} // namespace tessaro
