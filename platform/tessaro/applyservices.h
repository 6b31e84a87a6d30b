// SPDX-License-Identifier: MIT
/// The client's side of an apply.
#pragma once

#include "tessaro/status.h"

#include <QtCore/QString>

#include <sys/types.h>
#include <vector>

namespace tessaro {

/// Starts apply services, each as a process of its own, which sees at its standard input when this one has ended. A
/// service that has ended is reaped when the next one is started, and when this object goes; the last one, which runs a
/// little longer, is left to the end of this process.
class ApplyServices {
public:
    ApplyServices() = default;
    ~ApplyServices();
    ApplyServices(const ApplyServices &) = delete;
    ApplyServices &operator=(const ApplyServices &) = delete;

    /// Where a service cannot be started, prints why.
    Status start(const QString &section, const QString &trigger);

private:
    void reapEnded();

    std::vector<pid_t> running;
};

} // namespace tessaro
