// SPDX-License-Identifier: MIT
#include "trial/storedchange.h"

#include "report/error.h"

namespace quendar {

StoredChange::StoredChange(const StateFolder &stateFolder) : folder(stateFolder), record(folder.record()) {
    folder.removeUnfinished();
}

void StoredChange::noteReverting() {
    if (!storeIfPossible())
        markIfPossible();
}

void StoredChange::noteReverted() {
    try {
        end(ChangeState::Reverted);
    } catch (const Error &) {
        record->state = ChangeState::Reverted;
        markIfPossible();
    }
}

/// On a full disk only a name can be changed.
void StoredChange::markIfPossible() const {
    try {
        folder.mark(record->id, record->state);
    } catch (const Error &) { // NOLINT(bugprone-empty-catch)
    }
}

void StoredChange::end(ChangeState state) {
    ChangeRecord ended = *record;
    ended.state = state;
    ended.ended = QDateTime::currentDateTimeUtc();
    ended.passTo(BootMoment::now());
    folder.write(ended);
    record = ended;
    tidyUp();
}

void StoredChange::tidyUp() const {
    try {
        folder.tidyUp(*record);
    } catch (const Error &) { // NOLINT(bugprone-empty-catch)
    }
}

void StoredChange::store() {
    record->passTo(BootMoment::now());
    folder.write(*record);
}

bool StoredChange::storeIfPossible() {
    try {
        store();
    } catch (const Error &) {
        return false;
    }
    return true;
}

} // namespace quendar
