#include "host/audio/pending_file.h"

#include "host/audio/audio_error.h"

#include <cerrno>
#include <fstream>
#include <random>
#include <system_error>

namespace host {

namespace {

/// Not made from the target's name: that may be as long as names can be.
std::filesystem::path temporary_beside(const std::filesystem::path& target) {
    std::random_device random;
    return target.parent_path() / (".kelvane-" + std::to_string(random()) + std::to_string(random()) + ".part");
}

void check_target(const std::filesystem::path& target) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(target, ignored);
    if (std::filesystem::is_directory(status)) {
        throw audio_error(target, "is a folder");
    }
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw audio_error(target, "is not a plain file, and is not replaced");
    }
}

} // namespace

pending_file::pending_file(std::filesystem::path target)
    : target_(std::move(target)), temporary_(temporary_beside(target_)) {
    check_target(target_);
    errno = 0;
    if (!std::ofstream(temporary_, std::ios::binary)) {
        throw audio_error(target_, "no file can be written there: " + std::generic_category().message(errno));
    }
}

pending_file::~pending_file() {
    std::error_code ignored; // after a commit there is none
    std::filesystem::remove(temporary_, ignored);
}

void pending_file::commit() {
    std::error_code error;
    std::filesystem::rename(temporary_, target_, error);
    if (error) {
        throw audio_error(target_, "cannot be replaced: " + error.message());
    }
}

} // namespace host
