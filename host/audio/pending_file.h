// A file that gets its name only when it is whole.
#pragma once

#include <filesystem>
#include <optional>

namespace host {

/// Lies beside its target under a temporary name. Whoever writes it has closed it before `commit` and before the
/// destructor, which removes it if there was no `commit`. A target that is a symbolic link stays one: the file goes
/// where it points to. A file that is replaced hands on its permissions, but no hard links.
class pending_file {
public:
    /// Makes the empty file. Throws `audio_error` when the target is a folder or the like, or its folder takes no file.
    explicit pending_file(std::filesystem::path target);
    pending_file(const pending_file&) = delete;
    pending_file& operator=(const pending_file&) = delete;
    ~pending_file();

    const std::filesystem::path& target() const noexcept { return target_; }
    const std::filesystem::path& temporary() const noexcept { return temporary_; }

    /// Puts the file in the target's place. Throws `audio_error`.
    void commit();

private:
    std::filesystem::path target_;
    std::filesystem::path place_; ///< the target with its links followed
    std::filesystem::path temporary_;
    std::optional<std::filesystem::perms> permissions_; ///< those of the file that is there
};

} // namespace host
