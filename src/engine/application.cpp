// SPDX-License-Identifier: MIT
#include "engine/application.h"

#include <QtCore/QDir>

#include <cstdio>
#include <cstdlib>

namespace quendar {

namespace {

bool isAlone() {
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() == 1;
}

} // namespace

Application::Application(int &argc, char **argv) : application(std::in_place, argc, argv) {
    // a network access manager that loads no plugins: the queries come from the program itself
    QCoreApplication::setLibraryPaths({});
}

void Application::end(int status) {
    // The engine's network access manager has started a thread that may not even have got to its first line: where
    // `exit` destroys Qt's globals under it, it crashes. The application's end waits for it, but for seconds only.
    application.reset();
    if (!isAlone()) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    std::exit(status);
}

} // namespace quendar
