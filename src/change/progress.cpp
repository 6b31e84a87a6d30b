// SPDX-License-Identifier: MIT
#include "change/progress.h"

#include "change/readable.h"

#include <cstdio>
#include <poll.h>
#include <unistd.h>

namespace quendar {

namespace {

void write(const QString &text) {
    pollfd stream{STDERR_FILENO, POLLOUT, 0};
    if (::poll(&stream, 1, 0) > 0)
        std::fputs(text.toLocal8Bit().constData(), stderr);
}

} // namespace

ShownProgress::ShownProgress()
    : isOnTerminal(::isatty(STDERR_FILENO) != 0 && qgetenv("TERM") != QByteArrayLiteral("dumb")) {}

void ShownProgress::applying(int number, int count, const QString &section, std::chrono::seconds elapsed) {
    const QString text =
        QStringLiteral("applying %1 of %2: %3").arg(QString::number(number), QString::number(count), readable(section));
    if (isOnTerminal)
        write(QStringLiteral("\r\x1b[K%1, %2 s").arg(text, QString::number(elapsed.count())));
    else if (number != lastNumber)
        write(text + QLatin1Char('\n'));
    lastNumber = number;
}

void ShownProgress::applied() {
    if (isOnTerminal)
        write(QStringLiteral("\r\x1b[K"));
}

} // namespace quendar
