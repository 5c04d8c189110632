#include "host/audio/pending_file.h"

#include "host/audio/audio_error.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace host {
namespace {

using testing_support::read_bytes;
using testing_support::thrown_text;
using testing_support::write_bytes;

class PendingFile : public testing::Test {
protected:
    testing_support::temporary_folder folder;
};

TEST_F(PendingFile, LiesBesideItsTargetUntilTheCommit) {
    pending_file file(folder / "out.wav");
    EXPECT_EQ(file.temporary().parent_path(), folder.path());
    EXPECT_FALSE(std::filesystem::exists(folder / "out.wav"));
    write_bytes(file.temporary(), "new");
    file.commit();
    EXPECT_EQ(read_bytes(folder / "out.wav"), "new");
    EXPECT_EQ(folder.entries(), 1U);
}

TEST_F(PendingFile, ReplacesTheFileThatHadTheName) {
    write_bytes(folder / "out.wav", "old");
    pending_file file(folder / "out.wav");
    write_bytes(file.temporary(), "new");
    EXPECT_EQ(read_bytes(folder / "out.wav"), "old");
    file.commit();
    EXPECT_EQ(read_bytes(folder / "out.wav"), "new");
    EXPECT_EQ(folder.entries(), 1U);
}

TEST_F(PendingFile, WithoutACommitLeavesAllAsItWas) {
    write_bytes(folder / "out.wav", "old");
    {
        const pending_file file(folder / "out.wav");
        write_bytes(file.temporary(), "new");
        EXPECT_EQ(folder.entries(), 2U);
    }
    EXPECT_EQ(read_bytes(folder / "out.wav"), "old");
    EXPECT_EQ(folder.entries(), 1U);
}

TEST_F(PendingFile, TwoOfOneTargetDoNotMeet) {
    const pending_file one(folder / "out.wav");
    const pending_file other(folder / "out.wav");
    EXPECT_NE(one.temporary(), other.temporary());
}

TEST_F(PendingFile, TakesTheLongestNames) {
    const std::filesystem::path target = folder / (std::string(240, 'n') + ".wav");
    pending_file file(target);
    file.commit();
    EXPECT_TRUE(std::filesystem::exists(target));
}

TEST_F(PendingFile, AFolderOfThatNameIsRefused) {
    std::filesystem::create_directory(folder / "out.wav");
    EXPECT_EQ(thrown_text<audio_error>([&] { pending_file(folder / "out.wav"); }),
              (folder / "out.wav").string() + ": is a folder");
}

TEST_F(PendingFile, AMissingFolderIsAnErrorThatNamesTheTarget) {
    const std::filesystem::path target = folder / "nowhere" / "out.wav";
    EXPECT_EQ(thrown_text<audio_error>([&] { pending_file{target}; }),
              target.string() + ": no file can be written there: No such file or directory");
}

TEST_F(PendingFile, ATargetThatCannotBeReplacedIsAnErrorAndNothingIsLeft) {
    std::filesystem::create_directory(folder / "later");
    {
        pending_file file(folder / "later" / "out.wav");
        std::filesystem::create_directory(folder / "later" / "out.wav");
        const std::string error = thrown_text<audio_error>([&] { file.commit(); });
        EXPECT_EQ(error.find((folder / "later" / "out.wav").string() + ": cannot be replaced: "), 0U) << error;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder / "later" / "out.wav"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "later"), {}), 1);
}

} // namespace
} // namespace host
