// SPDX-License-Identifier: MIT
#include "trial/sectionrun.h"

#include "stages/applysection.h"
#include "trial/sectionapplier.h"

#include <tessaroclient.h>

namespace quendar {

SectionRun::SectionRun(StoredChange &stored, const FileLock &held, TrialObserver &watcher)
    : change(stored), lock(held), observer(watcher) {
    postAction.replace();
}

void SectionRun::apply(const QStringList &sections, QVector<SectionResult> &results, AtFailure atFailure) {
    SectionApplier applier(lock.descriptor(), change->applyLimit);
    for (int i = 0; i < sections.size(); ++i) {
        const BootMoment start = BootMoment::now();
        const auto tell = [&] {
            const auto elapsed = std::chrono::floor<std::chrono::seconds>(BootMoment::now().time - start.time);
            observer.applying(i + 1, sections.size(), sections.at(i), elapsed);
            return true;
        };
        tell();
        results.append(applier.apply(sections.at(i), change->trigger(i), tell));
        if (atFailure == AtFailure::GoOn) {
            change.storeIfPossible();
            continue;
        }
        change.store();
        if (results.last().outcome != SectionResult::Applied)
            break;
    }
    observer.applied();
}

std::optional<ChangeRecord::PostAction> SectionRun::takePostAction() const {
    const QString line = postAction.read(printWarning);
    postAction.remove();
    const QString command = postActionCommand(line, change->isRestartHeldBack, qEnvironmentVariableIsSet("DISPLAY"));
    return line.isEmpty() ? std::nullopt : std::optional(ChangeRecord::PostAction{line, command});
}

void withdrawApplies(const ChangeRecord &record) {
    TessaroClient client;
    for (int i = 0; i < record.usedTriggers(); ++i)
        withdrawApply(client, record.trigger(i));
}

} // namespace quendar
