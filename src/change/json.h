// SPDX-License-Identifier: MIT
/// What the commands print with `--json`.
#pragma once

#include "change/masking.h"
#include "planning/importplan.h"
#include "planning/redaction.h"
#include "planning/verification.h"
#include "trial/changestatus.h"

#include <QtCore/QByteArray>

namespace quendar {

// Each is one object on one line, in UTF-8; docs/change.schema.json describes them.

/// With the id of the change that is @p open, unless that is empty.
QByteArray errorJson(const QString &message, const QString &open);

/// With the id of the change that waits, or is empty.
QByteArray planJson(const ImportPlan &plan, const Masking &masking, const QString &open);

QByteArray statusJson(const ChangeStatus &status);
QByteArray historyJson(const QVector<ChangeStatus> &statuses);
QByteArray noChangeJson();
QByteArray verificationJson(const Verification &verification);
QByteArray redactionJson(const Redaction &redaction);

} // namespace quendar
