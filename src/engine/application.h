// SPDX-License-Identifier: MIT
/// The process that the XML engine runs in.
#pragma once

#include <QtCore/QCoreApplication>

#include <optional>

namespace quendar {

/// What every program that uses the engine has one of, and ends by. There is no event loop.
class Application {
public:
    /// @p argc must live as long as this object.
    Application(int &argc, char **argv);

    /// Ends the process with @p status, once the engine's thread has ended.
    [[noreturn]] void end(int status);

private:
    std::optional<QCoreApplication> application;
};

} // namespace quendar
