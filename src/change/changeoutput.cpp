// SPDX-License-Identifier: MIT
#include "change/changeoutput.h"

#include "change/changetext.h"
#include "change/json.h"
#include "change/standardstreams.h"

namespace quendar {

void printChange(const CommandLine &commandLine, const ChangeStatus &status) {
    print(commandLine.has(option::json) ? statusJson(status) : changeText(status));
}

void printHistory(const CommandLine &commandLine, const QVector<ChangeStatus> &statuses) {
    QByteArray text;
    for (const ChangeStatus &status : statuses)
        text += changeLine(status.record);
    print(commandLine.has(option::json) ? historyJson(statuses) : text);
}

void printNoChange(const CommandLine &commandLine, const char *sentence) {
    print(commandLine.has(option::json) ? noChangeJson() : QByteArray(sentence) + '\n');
}

} // namespace quendar
