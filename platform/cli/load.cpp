// SPDX-License-Identifier: MIT
#include "cli/load.h"

#include "cli/fail.h"
#include "cli/treejson.h"
#include "tessaro/store.h"

#include <QtCore/QFile>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tessaro {

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Gives up, unless there is no @p error.
void check(const std::error_code &error, const std::filesystem::path &file) {
    if (error)
        fail(QStringLiteral("cannot make \"%1\": %2")
                 .arg(QFile::decodeName(file.c_str()), QString::fromStdString(error.message())));
}

/// A new file beside @p target, readable by its owner only; removed unless it takes the target's place.
class NewFile {
public:
    explicit NewFile(const std::string &target) : path(target + ".XXXXXX"), descriptor(mkstemp(path.data())) {
        if (descriptor < 0)
            check(lastError(), target);
        // before SQLite opens the file: closing it later would drop SQLite's locks
        close(descriptor);
    }
    ~NewFile() {
        if (!path.empty())
            unlink(path.c_str());
    }
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    const std::string &name() const { return path; }

    void takePlaceOf(const std::string &target) {
        std::error_code error;
        std::filesystem::rename(path, target, error);
        check(error, target);
        path.clear();
    }

private:
    std::string path;
    int descriptor;
};

void makeFolderFor(const std::filesystem::path &file) {
    const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
    std::error_code error;
    std::filesystem::create_directories(folder.parent_path(), error);
    check(error, folder);
    if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        check(lastError(), folder);
}

void fill(const std::string &file, const QJsonObject &tree) {
    Store store(file);
    SQLite::Transaction transaction = store.write();
    store.clear();
    writeTree(store, QString(), tree);
    transaction.commit();
}

} // namespace

void replaceRegistry(const std::string &file, const QJsonObject &tree) {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (!error && size > 0) {
        fill(file, tree);
        return;
    }
    makeFolderFor(file);
    NewFile registry(file);
    Store::format(registry.name());
    fill(registry.name(), tree);
    // what a former registry of that name has left: SQLite would roll it back into the new file
    for (const char *const rest : {"-journal", "-wal", "-shm"})
        unlink((file + rest).c_str());
    registry.takePlaceOf(file);
}

} // namespace tessaro
