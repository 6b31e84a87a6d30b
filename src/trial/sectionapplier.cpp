// SPDX-License-Identifier: MIT
#include "trial/sectionapplier.h"

#include "registry/viewkey.h"
#include "registry/viewpaths.h"
#include "stages/applysection.h"

#include <tessaroclient.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace quendar {

namespace {

QByteArray lineOf(const QJsonArray &words) {
    return QJsonDocument(words).toJson(QJsonDocument::Compact);
}

SectionResult::Outcome outcomeOf(const ApplyResult &result) {
    if (result.status != 0)
        return SectionResult::Refused;
    return result.isApplied() ? SectionResult::Applied : SectionResult::Failed;
}

/// Hooks print to standard error: where nobody reads that any more, they must not fail for it.
void replaceErrorStreamWithoutReader() {
    pollfd stream{STDERR_FILENO, 0, 0};
    if (::poll(&stream, 1, 0) <= 0 || (stream.revents & POLLERR) == 0)
        return;
    const Descriptor nothing(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    ::dup2(nothing.number(), STDERR_FILENO);
}

} // namespace

SectionResult SectionApplier::apply(const QString &section, const QString &trigger, const Tick &tick) {
    const BootMoment start = BootMoment::now();
    SectionResult result;
    result.name = section;
    if (!helper)
        helper.emplace(QStringList{QStringLiteral("apply-sections"), QString::number(limit.count())}, lock);
    const std::optional<QByteArray> line = helper->ask(lineOf({section, trigger}), limit, tick);
    if (line) {
        const QJsonArray answer = QJsonDocument::fromJson(*line).array();
        const ApplyResult applied{answer.at(0).toInt(), answer.at(1).toString()};
        result.outcome = outcomeOf(applied);
        result.status = applied.status;
        result.answer = applied.answer;
    } else {
        helper.reset();
        TessaroClient client;
        withdrawApply(client, trigger);
    }
    result.duration = BootMoment::now().time - start.time;
    return result;
}

int runApplySections(std::chrono::seconds limit) {
    HelperTask task;
    TessaroClient client;
    while (const std::optional<QByteArray> line = task.nextLine()) {
        const QJsonArray words = QJsonDocument::fromJson(*line).array();
        replaceErrorStreamWithoutReader();
        ::alarm(unsigned(limit.count())); // whose signal ends this process
        const ApplyResult result =
            applySection(client, childKey(viewRoot(), words.at(0).toString()), words.at(1).toString());
        ::alarm(0);
        if (!task.answer(lineOf({result.status, result.answer})))
            break;
    }
    return 0;
}

} // namespace quendar
