#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <sqlite3.h>

// Loaded into the tool ahead of SQLite: counts the statements that are begun, and leaves the number in the file
// $STATEMENTS.

namespace {

struct Counter {
    int number = 0;

    ~Counter() {
        if (std::FILE *const file = std::fopen(std::getenv("STATEMENTS"), "w")) {
            std::fprintf(file, "%d", number);
            std::fclose(file);
        }
    }
};

Counter counter;

} // namespace

int sqlite3_step(sqlite3_stmt *statement) {
    static const auto next = reinterpret_cast<int (*)(sqlite3_stmt *)>(::dlsym(RTLD_NEXT, "sqlite3_step"));
    if (sqlite3_stmt_busy(statement) == 0)
        ++counter.number;
    return next(statement);
}
