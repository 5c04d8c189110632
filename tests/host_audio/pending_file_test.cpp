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

#ifndef _WIN32 // where a file has no such permissions, and links are for administrators
TEST_F(PendingFile, KeepsThePermissionsOfTheFileThatItReplaces) {
    using std::filesystem::perms;
    for (const perms kept : {perms::owner_read | perms::owner_write, perms::owner_all | perms::group_read,
                             perms::owner_read | perms::group_read | perms::others_read}) {
        write_bytes(folder / "out.wav", "old");
        std::filesystem::permissions(folder / "out.wav", kept);
        pending_file file(folder / "out.wav");
        EXPECT_EQ(std::filesystem::status(file.temporary()).permissions(), kept | perms::owner_write);
        write_bytes(file.temporary(), "new");
        file.commit();
        EXPECT_EQ(read_bytes(folder / "out.wav"), "new");
        EXPECT_EQ(std::filesystem::status(folder / "out.wav").permissions(), kept);
        std::filesystem::permissions(folder / "out.wav", perms::owner_all);
        std::filesystem::remove(folder / "out.wav");
    }
}

TEST_F(PendingFile, GoesWhereALinkPointsTo) {
    std::filesystem::create_directory(folder / "far");
    std::filesystem::create_symlink("far/link.wav", folder / "out.wav");
    std::filesystem::create_symlink("there.wav", folder / "far" / "link.wav");
    for (const char* const content : {"first", "second"}) { // there is nothing yet, and then there is
        pending_file file(folder / "out.wav");
        EXPECT_EQ(file.temporary().parent_path(), folder / "far");
        write_bytes(file.temporary(), content);
        file.commit();
        EXPECT_TRUE(std::filesystem::is_symlink(folder / "out.wav"));
        EXPECT_TRUE(std::filesystem::is_symlink(folder / "far" / "link.wav"));
        EXPECT_EQ(read_bytes(folder / "far" / "there.wav"), content);
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "far"), {}), 2);
}

TEST_F(PendingFile, ALinkThatPointsToItselfIsAnError) {
    std::filesystem::create_symlink("out.wav", folder / "out.wav");
    EXPECT_EQ(thrown_text<audio_error>([&] { pending_file{folder / "out.wav"}; }),
              (folder / "out.wav").string() + ": no file can be written there: Too many levels of symbolic links");
    EXPECT_EQ(folder.entries(), 1U);
}
#endif

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
