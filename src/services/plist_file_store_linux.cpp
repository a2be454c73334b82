#include "services/plist_file_store_linux.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <system_error>

#include "services/file_contents.h"
#include "services/property_list_codec.h"
#include "services/write_all_linux.h"

namespace vantle {
namespace {

void warn(const std::string& text) {
    std::fprintf(stderr, "vantle-control: %s\n", text.c_str());
}

std::string errorText(int error) {
    return std::generic_category().message(error);
}

// Makes the rename itself durable; without it a power cut can bring the old file back.
void syncDirectory(const std::filesystem::path& directory) {
    const int fd = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

std::string timestamp() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &local);
    return text;
}

}  // namespace

PlistFileStore::PlistFileStore(std::filesystem::path path) : path_(std::move(path)) {}

std::optional<PlistFileStore::FileIdentity> PlistFileStore::identityOf(const std::filesystem::path& path,
                                                                      int& error) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        error = errno;
        return std::nullopt;
    }
    error = 0;
    FileIdentity identity;
    identity.device = status.st_dev;
    identity.inode = status.st_ino;
    identity.size = status.st_size;
    identity.modifiedNanoseconds = status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec;
    identity.changedNanoseconds = status.st_ctim.tv_sec * 1'000'000'000LL + status.st_ctim.tv_nsec;
    return identity;
}

void PlistFileStore::refresh() {
    int error = 0;
    std::optional<FileIdentity> identity = identityOf(path_, error);
    if (loaded_ && identity == seen_) {
        return;
    }
    if (!identity && error != ENOENT && error != ENOTDIR) {
        // The file may exist but cannot even be looked at; keep what we know rather than
        // pretending the user's settings are gone.
        if (!loaded_) {
            warn("cannot look at the settings file " + path_.string() + ": " + errorText(error));
            writeBlocked_ = true;
            loaded_ = true;
        }
        return;
    }
    load(identity);
}

void PlistFileStore::load(const std::optional<FileIdentity>& identity) {
    loaded_ = true;
    seen_ = identity;
    // What the file holds now is all there is: changes a failed save kept in memory are gone.
    values_.clear();
    unsaved_ = false;
    if (!identity) {
        return;
    }
    const std::optional<std::string> bytes = readFileContents(path_);
    if (!bytes) {
        setAsideBrokenFile("it cannot be read");
        return;
    }
    std::optional<PlistValue> parsed = parsePropertyList(*bytes);
    if (!parsed) {
        setAsideBrokenFile(bytes->empty() ? "it is empty" : "it is not a property list");
        return;
    }
    const PlistValue::Dictionary* dictionary = parsed->asDictionary();
    if (dictionary == nullptr) {
        setAsideBrokenFile("its top level is not a dictionary");
        return;
    }
    values_ = *dictionary;
}

void PlistFileStore::setAsideBrokenFile(const std::string& reason) {
    values_.clear();
    std::filesystem::path aside = path_;
    aside += "-broken-" + timestamp();
    for (int suffix = 1; std::filesystem::exists(aside); ++suffix) {
        aside = path_;
        aside += "-broken-" + timestamp() + "-" + std::to_string(suffix);
    }
    if (::rename(path_.c_str(), aside.c_str()) == 0) {
        warn("the settings file " + path_.string() + " was unusable (" + reason + "); it was kept as " +
             aside.string() + " and the settings start empty");
        seen_.reset();
        return;
    }
    warn("the settings file " + path_.string() + " is unusable (" + reason + ") and could not be moved aside (" +
         errorText(errno) + "); settings changed now will not be saved");
    writeBlocked_ = true;
}

std::optional<PlistValue> PlistFileStore::object(std::string_view key) {
    refresh();
    if (auto found = values_.find(key); found != values_.end()) {
        return found->second;
    }
    return std::nullopt;
}

bool PlistFileStore::setObject(std::string_view key, std::optional<PlistValue> value) {
    refresh();
    const auto found = values_.find(key);
    // Each save is a whole file flushed to the disk: one that would write what the file already
    // holds is left out.
    const bool unchanged = value ? found != values_.end() && found->second == *value : found == values_.end();
    if (unchanged && !unsaved_) {
        return true;
    }
    if (value) {
        values_.insert_or_assign(std::string(key), std::move(*value));
    } else if (found != values_.end()) {
        values_.erase(found);
    }
    return save();
}

bool PlistFileStore::save() {
    // Until a save succeeds, values_ holds more than the file.
    unsaved_ = true;
    if (writeBlocked_) {
        return false;
    }
    const std::filesystem::path directory = path_.parent_path();
    std::error_code ignored;
    std::filesystem::create_directories(directory, ignored);

    std::filesystem::path temporary = path_;
    temporary += ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(++temporaryCounter_);
    const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) {
        warn("cannot save the settings in " + directory.string() + ": " + errorText(errno));
        return false;
    }
    const std::string xml = serializePropertyListXml(PlistValue(values_));
    const bool written = writeAll(fd, xml) && ::fsync(fd) == 0;
    const int writeError = errno;
    ::close(fd);
    if (!written || ::rename(temporary.c_str(), path_.c_str()) != 0) {
        warn("cannot save the settings file " + path_.string() + ": " + errorText(written ? errno : writeError));
        ::unlink(temporary.c_str());
        return false;
    }
    syncDirectory(directory);
    int error = 0;
    seen_ = identityOf(path_, error);
    unsaved_ = false;
    return true;
}

}  // namespace vantle
