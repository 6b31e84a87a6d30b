/// The client's side of an apply.
#pragma once

#include "status.h"

#include <QtCore/QString>

#include <sys/types.h>
#include <vector>

/// Starts apply services, each as a process of its own, and takes note of their ends so that none stays behind as a
/// zombie for long. Those that still run when this object goes run on.
class ApplyServices {
public:
    ApplyServices() = default;
    ~ApplyServices();
    ApplyServices(const ApplyServices &) = delete;
    ApplyServices &operator=(const ApplyServices &) = delete;

    /// Where a service cannot be started, prints why.
    Status start(const QString &section, const QString &trigger);

private:
    void forgetEnded();

    std::vector<pid_t> running;
};
