// SPDX-License-Identifier: MIT
/// What the commands print with `--json`.
#pragma once

#include "change/masking.h"
#include "planning/importplan.h"
#include "planning/redaction.h"
#include "planning/verification.h"

#include <QtCore/QByteArray>

namespace quendar {

// Each is one object on one line, in UTF-8; docs/change.schema.json describes them.

QByteArray errorJson(const QString &message);
QByteArray planJson(const ImportPlan &plan, const Masking &masking);
QByteArray verificationJson(const Verification &verification);
QByteArray redactionJson(const Redaction &redaction);

} // namespace quendar
