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
    // what cannot be written to fails as the closed stream would have
    int descriptor = ::open("/dev/null", O_RDONLY);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = ::open("/dev/null", O_RDONLY);
    if (descriptor >= 0)
        ::close(descriptor);
    std::signal(SIGPIPE, SIG_IGN);
}

QByteArray readDocumentAt(const QString &path) {
    QFile file(path);
    if (path == QLatin1String("-"))
        require(file.open(stdin, QIODevice::ReadOnly), Error(QStringLiteral("impossible to read standard input")));
    else
        openForImport(file);
    const QByteArray document = readDocument(file);
    require(file.error() == QFile::NoError, Error(QStringLiteral("impossible to read file: ") + path));
    return document;
}

void print(const QByteArray &text) {
    const auto size = static_cast<std::size_t>(text.size());
    const bool isWritten = std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    require(isWritten, Error(QStringLiteral("impossible to write to standard output")));
}

bool isColoured() {
    return ::isatty(STDOUT_FILENO) != 0 && qEnvironmentVariableIsEmpty("NO_COLOR") &&
           qgetenv("TERM") != QByteArrayLiteral("dumb");
}

} // namespace quendar
