// Loading a shared library.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace host {

/// Loads the library at `file` and keeps it loaded while the object lives.
class shared_library {
public:
    /// Throws std::runtime_error with the system's reason when the file cannot be loaded.
    explicit shared_library(const std::filesystem::path& file);

    /// The address of an exported name, or null.
    void* find(const std::string& name) const;

private:
    struct closing {
        void operator()(void* handle) const noexcept;
    };
    std::unique_ptr<void, closing> handle_;
};

} // namespace host
