#include "host/audio/pending_file.h"

#include "host/audio/audio_error.h"
#include "host/audio/windows_name.h"
#include "host/platform/path_text.h"

#include <cerrno>
#include <fstream>
#include <random>
#include <string>
#include <system_error>

namespace host {

namespace {

constexpr int most_links = 40; // as many as the system follows

/// Where a file of that name comes to lie: behind its links, also when the last of them points to nothing yet.
std::filesystem::path follow_links(std::filesystem::path target) {
    std::error_code none;
    for (int links = 0; links < most_links && std::filesystem::is_symlink(target, none); ++links) {
        target = target.parent_path() / std::filesystem::read_symlink(target, none);
    }
    return target;
}

std::optional<std::filesystem::perms> permissions_of(const std::filesystem::path& file) {
    std::error_code none;
    const std::filesystem::file_status status = std::filesystem::status(file, none);
    return std::filesystem::exists(status) ? std::optional(status.permissions()) : std::nullopt;
}

/// Not made from the target's name: that may be as long as names can be.
std::filesystem::path temporary_beside(const std::filesystem::path& target) {
    std::random_device random;
    return target.parent_path() / (".kelvane-" + std::to_string(random()) + std::to_string(random()) + ".part");
}

std::string cannot_be_written(const std::string& reason) {
    return "no file can be written there: " + reason;
}

void check_target(const std::filesystem::path& target) {
#ifdef _WIN32 // which finds that out when the file is to get its name
    if (!is_windows_file_name(to_utf8(target.filename()))) {
        throw audio_error(target, "is not a name that a file can have");
    }
#endif
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(target, error);
    if (status.type() == std::filesystem::file_type::none) { // neither there nor missing: links in a circle, say
        throw audio_error(target, cannot_be_written(error.message()));
    }
    if (std::filesystem::is_directory(status)) {
        throw audio_error(target, "is a folder");
    }
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw audio_error(target, "is not a plain file, and is not replaced");
    }
}

} // namespace

pending_file::pending_file(std::filesystem::path target)
    : target_(std::move(target)), place_(follow_links(target_)), temporary_(temporary_beside(place_)),
      permissions_(permissions_of(place_)) {
    check_target(target_);
    errno = 0;
    if (!std::ofstream(temporary_, std::ios::binary)) {
        throw audio_error(target_, cannot_be_written(std::generic_category().message(errno)));
    }
    // Before anything is in it. For that moment it has the permissions of any new file, and who opens it then can read
    // what is written to it afterwards.
    if (permissions_) {
        std::error_code ignored;
        std::filesystem::permissions(temporary_, *permissions_ | std::filesystem::perms::owner_write, ignored);
    }
}

pending_file::~pending_file() {
    std::error_code ignored; // after a commit there is none
    std::filesystem::remove(temporary_, ignored);
}

void pending_file::commit() {
    std::error_code error;
    std::filesystem::rename(temporary_, place_, error);
    if (error) {
        throw audio_error(target_, "cannot be replaced: " + error.message());
    }
    if (permissions_) {
        std::filesystem::permissions(place_, *permissions_, error);
    }
}

} // namespace host
