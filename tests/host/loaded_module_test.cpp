#include "host/module/loaded_module.h"

#include "tests/support/built_module.h"
#include "tests/support/thrown_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

using testing_support::thrown_text;

std::string load(const std::filesystem::path& file) {
    return thrown_text<host::module_error>([&] { const host::loaded_module loaded(file, nullptr); });
}

TEST(LoadedModule, SaysWhatIsWrongWithAFile) {
    EXPECT_THAT(load("no such file.so"), testing::StartsWith("cannot load the module no such file.so: "));
    const std::filesystem::path text_file = "not a library.txt";
    std::ofstream(text_file) << "text";
    EXPECT_THAT(load(text_file), testing::StartsWith("cannot load the module not a library.txt: "));
    std::filesystem::remove(text_file);
}

TEST(LoadedModule, ALibraryWithoutTheExportIsNoModule) {
#ifdef _WIN32
    EXPECT_EQ(load("quillet.dll"), "quillet.dll is not a module: it does not export velmora_get_interface");
#else
    EXPECT_EQ(load("libquillet.so"), "libquillet.so is not a module: it does not export velmora_get_interface");
#endif
}

TEST(LoadedModule, TheApiVersionIsThatOfTheInterface) {
    EXPECT_EQ(testing_support::built_module().entry().get_api_version(), 81U);
}

} // namespace
