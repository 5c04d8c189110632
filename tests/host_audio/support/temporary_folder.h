// A folder of one test's own.
#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace testing_support {

/// Empty at first, and removed with all that is in it.
class temporary_folder {
public:
    temporary_folder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                ("kelvane-test-" + std::to_string(random()) + std::to_string(random()));
        std::filesystem::create_directory(path_);
    }
    temporary_folder(const temporary_folder&) = delete;
    temporary_folder& operator=(const temporary_folder&) = delete;
    ~temporary_folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const noexcept { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

    /// How many files and folders are in it.
    std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
    }

private:
    std::filesystem::path path_;
};

} // namespace testing_support
