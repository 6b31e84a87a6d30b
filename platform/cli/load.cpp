// SPDX-License-Identifier: MIT
#include "cli/load.h"

#include "cli/treejson.h"
#include "tessaro/store.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tessaro {

namespace {

/// A new file beside @p target, readable by its owner only; removed unless it takes the target's place.
class NewFile {
public:
    explicit NewFile(const std::string &target) : path(target + ".XXXXXX"), descriptor(mkstemp(path.data())) {
        if (descriptor < 0)
            throw std::system_error(errno, std::generic_category(), target);
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
        std::filesystem::rename(path, target);
        path.clear();
    }

private:
    std::string path;
    int descriptor;
};

void makeFolderFor(const std::filesystem::path &file) {
    const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
    std::filesystem::create_directories(folder.parent_path());
    if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        throw std::system_error(errno, std::generic_category(), folder);
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
    if (std::filesystem::exists(file) && std::filesystem::file_size(file) > 0) {
        fill(file, tree);
        return;
    }
    makeFolderFor(file);
    NewFile registry(file);
    Store::format(registry.name());
    fill(registry.name(), tree);
    registry.takePlaceOf(file);
}

} // namespace tessaro
