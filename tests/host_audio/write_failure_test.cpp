// Folders and disks that do not take a file.
#include "host/audio/audio_error.h"
#include "host/audio/audio_writer.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

namespace host {
namespace {

using testing_support::noise;
using testing_support::thrown_text;
using testing_support::write_audio;

constexpr audio_format stereo{48000, 2, 0x3};

/// As if the disk had room for files of so many bytes.
class full_disk {
public:
    explicit full_disk(rlim_t room_bytes) {
        getrlimit(RLIMIT_FSIZE, &original_);
        const rlimit limit{room_bytes, original_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        original_handler_ = std::signal(SIGXFSZ, SIG_IGN);
    }
    full_disk(const full_disk&) = delete;
    full_disk& operator=(const full_disk&) = delete;
    ~full_disk() {
        setrlimit(RLIMIT_FSIZE, &original_);
        std::signal(SIGXFSZ, original_handler_);
    }

private:
    rlimit original_{};
    void (*original_handler_)(int) = SIG_DFL;
};

/// The rights of a user who is not the administrator.
class ordinary_user {
public:
    ordinary_user() { rights_ = seteuid(nobody); }
    ordinary_user(const ordinary_user&) = delete;
    ordinary_user& operator=(const ordinary_user&) = delete;
    ~ordinary_user() { rights_ = seteuid(getuid()); }

private:
    static constexpr uid_t nobody = 65534;
    int rights_ = 0; // without the administrator's rights there is nothing to give up, and it is refused
};

class WriteFailure : public testing::TestWithParam<const char*> {
protected:
    testing_support::temporary_folder folder;
};

TEST_P(WriteFailure, AFullDiskIsAnErrorAndLeavesNothing) {
    const std::filesystem::path file = folder / GetParam();
    const std::vector<double> samples = noise(2'000'000, 0.5);
    {
        const full_disk disk(100'000);
        const std::string error = thrown_text<audio_error>([&] { write_audio(file, {stereo, samples}); });
        EXPECT_EQ(error.find(file.string() + ": cannot be written: "), 0U) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos);
        EXPECT_EQ(folder.entries(), 0U);
    }
    write_audio(file, {stereo, samples});
    EXPECT_EQ(folder.entries(), 1U);
}

TEST_P(WriteFailure, AFullDiskAtTheVeryEndIsSeenToo) {
    const std::filesystem::path file = folder / GetParam();
    const std::vector<double> samples = noise(2'000, 0.5);
    write_audio(file, {stereo, samples});
    const auto whole_bytes = std::filesystem::file_size(file);
    std::filesystem::remove(file);
    const full_disk disk(whole_bytes - 1);
    const std::string error = thrown_text<audio_error>([&] { write_audio(file, {stereo, samples}); });
    EXPECT_EQ(error.find(file.string() + ": cannot be written: "), 0U) << error;
    EXPECT_EQ(folder.entries(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Containers, WriteFailure,
                         testing::Values("a.wav", "a.aiff", "a.caf", "a.w64", "a.flac", "a.ogg", "a.mp3"),
                         [](const auto& suffix) { return std::string(suffix.param).substr(2); });

using WriteFailureElse = WriteFailure;

TEST_F(WriteFailureElse, AFolderWithoutTheRightToWriteIsAnError) {
    std::filesystem::permissions(folder.path(), std::filesystem::perms{0555});
    std::string error;
    {
        const ordinary_user rights;
        error = thrown_text<audio_error>([&] { create_audio(folder / "a.wav", stereo); });
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms{0755});
    EXPECT_EQ(error, (folder / "a.wav").string() + ": no file can be written there: Permission denied");
}

TEST_F(WriteFailureElse, AFileWithoutTheRightToReadIsAnError) {
    write_audio(folder / "a.wav", {stereo, {0.5, 0.5}});
    std::filesystem::permissions(folder / "a.wav", std::filesystem::perms{});
    const ordinary_user rights;
    EXPECT_EQ(thrown_text<audio_error>([&] { open_audio(folder / "a.wav"); }),
              (folder / "a.wav").string() + ": cannot be opened: Permission denied");
}

TEST_F(WriteFailureElse, PipesAndDevicesAreRefused) {
    ASSERT_EQ(mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
    EXPECT_EQ(thrown_text<audio_error>([&] { open_audio(folder / "pipe.wav"); }),
              (folder / "pipe.wav").string() + ": is not a plain file");
    EXPECT_EQ(thrown_text<audio_error>([&] { create_audio(folder / "pipe.wav", stereo); }),
              (folder / "pipe.wav").string() + ": is not a plain file, and is not replaced");
}

} // namespace
} // namespace host
