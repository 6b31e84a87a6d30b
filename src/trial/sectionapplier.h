// SPDX-License-Identifier: MIT
/// The apply of sections, which may hang.
#pragma once

#include "trial/changerecord.h"
#include "trial/ownprogram.h"

#include <optional>

namespace quendar {

/// Has sections applied by a helper process, which is ended when one takes too long.
class SectionApplier {
public:
    /// The helper gets @p lockDescriptor; each section @p timeLimit.
    SectionApplier(int lockDescriptor, std::chrono::seconds timeLimit) : lock(lockDescriptor), limit(timeLimit) {}

    /// Applies @p section through the key at @p trigger, of which nothing is left afterwards.
    SectionResult apply(const QString &section, const QString &trigger, const Tick &tick);

private:
    const int lock;
    const std::chrono::seconds limit;
    std::optional<HelperProcess> helper; // from the first section on
};

/// The helper: reads from standard input what `SectionApplier` asks for. Returns the exit status.
int runApplySections(std::chrono::seconds limit);

} // namespace quendar
