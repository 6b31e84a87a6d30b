// SPDX-License-Identifier: MIT
#include "trial/statefolder.h"

#include "planning/changesetjson.h"
#include "report/error.h"
#include "trial/durablefile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace quendar {

namespace {

/// Changes that are remembered, the last one included.
constexpr int remembered = 20;

/// States that the name of a journal can tell of.
constexpr ChangeState marks[] = {ChangeState::Reverting, ChangeState::Reverted};

void requireOwn(const QString &path) {
    struct stat status = {};
    const bool isOwn = ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
                       status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    require(isOwn, Error(QStringLiteral("impossible to use %1: it is no folder of this user's own that nobody else may "
                                        "write in")
                             .arg(path)));
}

QString journalId(const QString &path) {
    const std::optional<QJsonObject> journal = readDurable(path);
    return journal ? journal->value(QLatin1String("id")).toString() : QString();
}

/// The number that the id of a change begins with.
int numberOf(const QString &id) {
    return id.section(QLatin1Char('-'), 0, 0).toInt();
}

} // namespace

StateFolder::StateFolder() : folder(QStringLiteral("/var/lib/quendar-change")) {
    const QString named = qEnvironmentVariable("QUENDAR_CHANGE_STATE");
    if (!named.isEmpty())
        folder = QDir::cleanPath(QDir().absoluteFilePath(named));
}

void StateFolder::make() const {
    makeFolderDurably(folder);
    requireOwn(folder);
    makeFolderDurably(historyPath());
    requireOwn(historyPath());
}

bool StateFolder::exists() const {
    return QFile::exists(folder);
}

bool StateFolder::isReadable() const {
    return ::access(QFile::encodeName(folder).constData(), R_OK | X_OK) == 0;
}

std::optional<ChangeRecord> StateFolder::record() const {
    const std::optional<QJsonObject> content = readDurable(recordPath());
    if (!content)
        return std::nullopt;
    ChangeRecord record = changeRecordFrom(*content);
    for (const ChangeState state : marks)
        if (record.isOpen() && journalId(markPath(state)) == record.id)
            record.state = state;
    return record;
}

void StateFolder::write(const ChangeRecord &record) const {
    writeDurably(recordPath(), toJson(record));
}

void StateFolder::archive() const {
    const std::optional<ChangeRecord> before = record();
    if (!before)
        return;
    renameDurably(recordPath(), earlierPath(before->id));
    const QStringList old = earlierIds().mid(remembered - 1);
    const QString kept = old.isEmpty() ? QString() : keptId();
    for (const QString &id : old)
        if (id != kept) // which can still be put back
            removeDurably(earlierPath(id));
}

QVector<ChangeRecord> StateFolder::history() const {
    QVector<ChangeRecord> records;
    const std::optional<ChangeRecord> current = record(); // before it may be among the earlier ones
    if (current)
        records.append(*current);
    for (const QString &id : earlierIds()) {
        const std::optional<QJsonObject> content = readDurable(earlierPath(id));
        if (content && !(current && current->id == id)) // one that was kept may be open again
            records.append(changeRecordFrom(*content));
    }
    std::sort(records.begin(), records.end(),
              [](const ChangeRecord &first, const ChangeRecord &second) { return first.number > second.number; });
    return records.mid(0, remembered);
}

std::optional<ChangeRecord> StateFolder::last() const {
    const std::optional<ChangeRecord> current = record();
    const QStringList earlier = earlierIds();
    if (current || earlier.isEmpty())
        return current;
    return recordOf(earlier.first());
}

int StateFolder::lastNumber() const {
    const QStringList earlier = earlierIds();
    return earlier.isEmpty() ? 0 : numberOf(earlier.first());
}

ChangeRecord StateFolder::recordOf(const QString &id) const {
    const std::optional<ChangeRecord> current = record();
    if (current && current->id == id)
        return *current;
    const std::optional<QJsonObject> content = earlierIds().contains(id) ? readDurable(earlierPath(id)) : std::nullopt;
    require(content.has_value(), Error(QStringLiteral("no such change: ") + id));
    return changeRecordFrom(*content);
}

QString StateFolder::earlierPath(const QString &id) const {
    return historyPath() + QLatin1Char('/') + id + QStringLiteral(".json");
}

/// The latest first.
QStringList StateFolder::earlierIds() const {
    QStringList ids = QDir(historyPath()).entryList({QStringLiteral("*.json")}, QDir::Files);
    ids.replaceInStrings(QRegularExpression(QStringLiteral("\\.json$")), QString());
    std::sort(ids.begin(), ids.end(),
              [](const QString &first, const QString &second) { return numberOf(first) > numberOf(second); });
    return ids;
}

void StateFolder::removeUnfinished() const {
    QDir directory(folder);
    for (const QString &name : directory.entryList({QStringLiteral("*.new")}, QDir::Files))
        directory.remove(name);
    if (!QFile::exists(recordPath()))
        QFile::remove(journalPath()); // nothing of it was done yet
}

std::optional<ChangeSet> StateFolder::journalOf(const QString &id) const {
    for (const QString &path : journalPaths()) {
        const std::optional<QJsonObject> journal = readDurable(path);
        if (journal && journal->value(QLatin1String("id")).toString() == id)
            return changeSetFrom(journal->value(QLatin1String("changes")).toArray());
    }
    return std::nullopt;
}

ChangeSet StateFolder::requireJournalOf(const QString &id) const {
    const std::optional<ChangeSet> changes = journalOf(id);
    require(
        changes.has_value(),
        Error(QStringLiteral("impossible to use %1: the journal of %2 is missing: see that the device has the settings "
                             "it should have, then remove state.json there")
                  .arg(folder, id)));
    return *changes;
}

/// Those at which a journal may be.
QStringList StateFolder::journalPaths() const {
    return {journalPath(), markPath(ChangeState::Reverting), markPath(ChangeState::Reverted), keptPath()};
}

void StateFolder::writeJournal(const QString &id, const ChangeSet &changes) const {
    writeDurably(journalPath(), {{QStringLiteral("id"), id}, {QStringLiteral("changes"), toJson(changes)}});
    const std::optional<ChangeSet> written = journalOf(id);
    require(written && written->byPath() == changes.byPath(),
            Error(QStringLiteral("impossible to keep in %1 what stands in the registry").arg(journalPath())));
}

void StateFolder::mark(const QString &id, ChangeState state) const {
    const QStringList paths = journalPaths();
    const auto journal =
        std::find_if(paths.cbegin(), paths.cend(), [&id](const QString &path) { return journalId(path) == id; });
    require(journal != paths.cend(), Error(QStringLiteral("impossible to note that %1 is put back").arg(id)));
    renameDurably(*journal, markPath(state));
}

bool StateFolder::isMarked() const {
    return std::any_of(
        std::begin(marks), std::end(marks), [this](ChangeState state) { return QFile::exists(markPath(state)); });
}

QString StateFolder::markPath(ChangeState state) const {
    return folder + QLatin1Char('/') + nameOf(state) + QStringLiteral(".json");
}

void StateFolder::wantPutBack(const QString &id) const {
    QFile file(wishPath());
    require(file.open(QIODevice::WriteOnly) && file.write(id.toUtf8()) > 0,
            Error(QStringLiteral("impossible to write ") + wishPath()));
}

bool StateFolder::isPutBackWanted(const QString &id) const {
    QFile file(wishPath());
    return file.open(QIODevice::ReadOnly) && QString::fromUtf8(file.readAll()) == id;
}

QString StateFolder::keptId() const {
    return journalId(keptPath());
}

void StateFolder::tidyUp(const ChangeRecord &record) const {
    const bool isKept = record.state == ChangeState::Confirmed;
    QFile::remove(wishPath());
    if (isKept && journalId(journalPath()) == record.id)
        renameDurably(journalPath(), keptPath());
    else
        removeDurably(journalPath());
    for (const ChangeState state : marks)
        removeDurably(markPath(state));
    if (!isKept && keptId() == record.id)
        forgetKept();
}

void StateFolder::forgetKept() const {
    removeDurably(keptPath());
}

} // namespace quendar
