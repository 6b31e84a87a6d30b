// SPDX-License-Identifier: MIT
#include "change/progress.h"

#include "change/readable.h"

#include <cstdio>
#include <unistd.h>

namespace quendar {

namespace {

void write(const QString &text) {
    std::fputs(text.toLocal8Bit().constData(), stderr);
}

} // namespace

Progress::Progress() : isOnTerminal(::isatty(STDERR_FILENO) != 0 && qgetenv("TERM") != QByteArrayLiteral("dumb")) {}

void Progress::show(int number, int count, const QString &section, std::chrono::seconds elapsed) {
    const QString text =
        QStringLiteral("applying %1 of %2: %3").arg(QString::number(number), QString::number(count), readable(section));
    if (isOnTerminal)
        write(QStringLiteral("\r\x1b[K%1, %2 s").arg(text, QString::number(elapsed.count())));
    else if (number != lastNumber)
        write(text + QLatin1Char('\n'));
    lastNumber = number;
}

void Progress::clear() const {
    if (isOnTerminal)
        write(QStringLiteral("\r\x1b[K"));
}

} // namespace quendar
