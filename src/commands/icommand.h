// SPDX-License-Identifier: MIT
/// What the tool's entry point runs.
#pragma once

namespace quendar {

/// One job of the tool, run once.
class ICommand {
public:
    ICommand() = default;
    virtual ~ICommand() = default;
    ICommand(const ICommand &) = delete;
    ICommand &operator=(const ICommand &) = delete;

    /// Throws Error when the job cannot be done.
    virtual void execute() = 0;
};

} // namespace quendar
