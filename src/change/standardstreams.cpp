// SPDX-License-Identifier: MIT
#include "change/standardstreams.h"

#include "document/document.h"
#include "document/documentfile.h"
#include "report/error.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace quendar {

void secureStandardStreams() {
    // a stream that was closed fails as it did: it cannot be read, or not written to
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (::fcntl(descriptor, F_GETFD) < 0)
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY); // the lowest that is free
    std::signal(SIGPIPE, SIG_IGN);
}

QByteArray readDocumentAt(const QString &path) {
    QFile file(path);
    const bool isStandardInput = path == QLatin1String("-");
    if (!isStandardInput)
        openForImport(file);
    const bool isOpen = file.isOpen() || file.open(STDIN_FILENO, QIODevice::ReadOnly);
    const QByteArray document = isOpen ? readDocument(file) : QByteArray();
    require(isOpen && file.error() == QFile::NoError,
            Error(isStandardInput ? QStringLiteral("impossible to read standard input")
                                  : QStringLiteral("impossible to read file: ") + path));
    return document;
}

void print(const QByteArray &text) {
    const auto size = static_cast<std::size_t>(text.size());
    const bool isWritten = std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    require(isWritten, Error(QStringLiteral("impossible to write to standard output")));
}

void ignoreStopKey() {
    std::signal(SIGTSTP, [](int) {}); // what is ignored would be so in the programs that are started as well
    std::signal(SIGTTOU, SIG_IGN);    // nor does a terminal that takes nothing from the background
}

bool isColoured() {
    return ::isatty(STDOUT_FILENO) != 0 && qEnvironmentVariableIsEmpty("NO_COLOR") &&
           qgetenv("TERM") != QByteArrayLiteral("dumb");
}

} // namespace quendar
