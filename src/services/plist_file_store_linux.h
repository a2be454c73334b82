#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "services/defaults_store.h"
#include "services/property_list.h"

namespace vantle {

// The settings domain kept in one property-list file.
//
// Reads check the file's identity (device, inode, size, modification and change times) and
// parse it again only when it changed, so edits by other programs are seen at the next read
// while an unchanged file costs one stat. Every write replaces the file atomically: the whole
// dictionary goes to a temporary file beside it, which is flushed and renamed over the old one,
// so a crash at any moment leaves either the old or the new file, never half of one. A write
// that changes nothing the file holds leaves the file alone.
//
// A file that cannot be read as a dictionary (garbage, truncated, a folder, unreadable) is
// moved aside under a "-broken-" name with a message on standard error and reads as empty.
// If it cannot be moved aside it is never overwritten: changes then live in memory only.
class PlistFileStore final : public DefaultsStore {
public:
    explicit PlistFileStore(std::filesystem::path path);

    std::optional<PlistValue> object(std::string_view key) override;
    bool setObject(std::string_view key, std::optional<PlistValue> value) override;

    const std::filesystem::path& path() const { return path_; }

private:
    struct FileIdentity {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::int64_t size = -1;
        std::int64_t modifiedNanoseconds = 0;
        std::int64_t changedNanoseconds = 0;
        bool operator==(const FileIdentity&) const = default;
    };

    // Brings values_ up to date with the file when the file changed since we last saw it.
    void refresh();
    void load(const std::optional<FileIdentity>& identity);
    void setAsideBrokenFile(const std::string& reason);
    bool save();

    std::filesystem::path path_;
    PlistValue::Dictionary values_;
    // What the file looked like when values_ last matched it; empty when there was no file.
    std::optional<FileIdentity> seen_;
    bool loaded_ = false;
    // Set when a broken file could not be moved aside: it must not be replaced.
    bool writeBlocked_ = false;
    // Set while values_ holds changes that the last save failed to write.
    bool unsaved_ = false;
    std::uint64_t temporaryCounter_ = 0;

    static std::optional<FileIdentity> identityOf(const std::filesystem::path& path, int& error);
};

}  // namespace vantle
