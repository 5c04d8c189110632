#include "host/objects/text.h"
#include "tests/support/built_module.h"
#include "tests/support/memory_stream.h"
#include "tests/support/thrown_text.h"
#include "velmora/component_version.h"
#include "velmora/file_name_check.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using testing_support::built_module;
using testing_support::memory_reader;
using testing_support::memory_writer;
using testing_support::thrown_text;

std::string load(const std::string& bytes) {
    memory_reader stream(bytes);
    host::abort_switch abort;
    return thrown_text<std::exception>([&] { built_module().entry().load_settings(&stream, &abort); });
}

std::string record(std::string size, const std::string& payload) {
    return std::string(16, 'i') + std::move(size) + payload;
}

using namespace std::string_literals;

TEST(ModuleSettings, SavingWritesNothing) {
    memory_writer stream;
    host::abort_switch abort;
    built_module().entry().save_settings(&stream, &abort);
    EXPECT_EQ(stream.written, "");
}

TEST(ModuleSettings, StreamsWithoutAWholeIdentityEndQuietly) {
    EXPECT_EQ(load(""), "nothing thrown");
    EXPECT_EQ(load(std::string(15, 'i')), "nothing thrown");
}

TEST(ModuleSettings, AnIdentityWithAShortSizeIsTruncated) {
    EXPECT_EQ(load(std::string(16, 'i')), "Unsupported format or corrupted file");
    EXPECT_EQ(load(record("\x01\x00"s, "")), "Unsupported format or corrupted file");
}

TEST(ModuleSettings, UnknownRecordsArePassedOver) {
    const std::string three = record("\x03\x00\x00\x00"s, "abc");
    const std::string none = record("\x00\x00\x00\x00"s, "");
    EXPECT_EQ(load(three + none + three), "nothing thrown");
}

TEST(ModuleSettings, ASizePastTheEndIsTruncated) {
    EXPECT_EQ(load(record("\x04\x00\x00\x00"s, "abc")), "Unsupported format or corrupted file");
    EXPECT_EQ(load(record("\xFF\xFF\xFF\xFF"s, "abc")), "Unsupported format or corrupted file");
}

TEST(ModuleNames, TheFileNameIsComparedByteForByteBehindTheLastSeparator) {
    struct row {
        const char* path;
        bool expected;
    };
    const row table[] = {
        {"kelvane.dll", true},
        {"C:\\Players\\kelvane.dll", true},
        {"/opt/player/kelvane.dll", true},
        {"C:kelvane.dll", true},
        {"archive|kelvane.dll", true},
        {"/opt/player/kelvane.dll/", false},
        {"/opt/player/Kelvane.dll", false},
        {"KELVANE.DLL", false},
        {"mykelvane.dll", false},
        {"kelvane.dll2", false},
        {"kelvane.so", false},
        {"", false},
    };
    for (const row& line : table) {
        built_module().entry().set_module_names(line.path, "name");
        EXPECT_EQ(testing_support::find_service<velmora::file_name_check>()->is_file_name_expected(), line.expected)
            << line.path;
    }
}

TEST(ModuleNames, NoTextIsAnEmptyOne) {
    built_module().entry().set_module_names("kelvane.dll", "kelvane.dll");
    built_module().entry().set_module_names(nullptr, nullptr);
    EXPECT_FALSE(testing_support::find_service<velmora::file_name_check>()->is_file_name_expected());
    host::text name;
    name.set_text("before", 6);
    testing_support::find_service<velmora::component_version>()->get_file_name(&name);
    EXPECT_EQ(name.str(), "");
}

} // namespace
