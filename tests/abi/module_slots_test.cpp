#include "tests/abi/hand_made_audio.h"
#include "tests/abi/hand_made_values.h"
#include "tests/abi/module_under_test.h"
#include "tests/abi/slots.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>

namespace abi_test {
namespace {

static_assert(offsetof(raw_record, next) == 8 && offsetof(raw_record, class_id) == 16 && sizeof(raw_record) == 24);

using namespace std::string_literals;

void load_settings(hand_made_reader& stream) {
    hand_made_signal signal;
    call<void>(module_object(), module_slot::load_settings, &stream, &signal);
}

/// What a version record's function sets.
std::string version_text(std::size_t slot) {
    hand_made_text out;
    call<void>(only_service(class_id::component_version), slot, &out);
    EXPECT_EQ(out.length, out.text.size()) << out.text;
    return out.text;
}

/// Hands names over from memory that holds something else afterwards.
void set_module_names(std::string path, std::string file_name) {
    call<void>(module_object(), module_slot::set_module_names, path.c_str(), file_name.c_str());
    path.assign(path.size(), '?');
    file_name.assign(file_name.size(), '?');
}

TEST(ModuleSlots, EnteringAgainGivesTheSameObject) {
    hand_made_service host; // never called: no dialog is shown
    void* const first = module_export()(&host);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(module_export()(nullptr), first);
    EXPECT_EQ(module_export()(nullptr), first);
}

TEST(ModuleSlots, AnswersTheVersionOfTheInterfaceAndFalseForTheReservedSlot) {
    EXPECT_EQ(call<std::uint32_t>(module_object(), module_slot::get_api_version), 81U);
    EXPECT_FALSE(call<bool>(module_object(), module_slot::reserved));
}

TEST(ModuleSlots, SavesNoSettings) {
    hand_made_writer stream;
    hand_made_signal signal;
    call<void>(module_object(), module_slot::save_settings, &stream, &signal);
    EXPECT_EQ(stream.bytes.size(), 0U);
}

TEST(ModuleSlots, PassesOverSettingsThatItDoesNotKnow) {
    // Each an identity, a size and a payload.
    hand_made_reader stream(std::string(16, 'a') + "\3\0\0\0xyz"s + std::string(16, 'b') + "\0\0\0\0"s);
    load_settings(stream);
    EXPECT_EQ(stream.position, 16U + 4U + 3U + 16U + 4U);
}

TEST(ModuleSlots, SettingsThatAreCutShortAreAnExceptionThatTheCallerUnderstands) {
    hand_made_reader stream(std::string(16, 'a') + "\3\0\0\0xy"s);
    try {
        load_settings(stream);
        FAIL() << "nothing thrown";
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "Unsupported format or corrupted file");
    }
}

TEST(ServiceList, EveryRecordAnswersForTheServiceThatLiesBehindItsFields) {
    ASSERT_FALSE(service_records().empty());
    for (raw_record* const record : service_records()) {
        void* const service = service_of(record);
        EXPECT_EQ(service, record + 1);
        void* queried = nullptr;
        EXPECT_TRUE(call<bool>(service, service_slot::query, &queried, record->class_id));
        EXPECT_EQ(queried, service);
    }
}

TEST(ServiceList, ARecordGivesBackTheServiceThatItReplaces) {
    hand_made_service held;
    void* out = &held;
    raw_record* const record = service_records().front();
    call<void>(record, record_slot::get_instance, &out);
    EXPECT_EQ(out, service_of(record));
    EXPECT_EQ(held.references, 0U);
}

TEST(StaticService, AlwaysCountsOneReference) {
    for (raw_record* const record : service_records()) {
        void* const service = service_of(record);
        EXPECT_EQ(call<std::uint32_t>(service, service_slot::add_ref), 1U);
        EXPECT_EQ(call<std::uint32_t>(service, service_slot::release), 1U);
        EXPECT_EQ(call<std::uint32_t>(service, service_slot::release), 1U);
    }
}

TEST(StaticService, LeavesTheAnswerAloneWhenAskedForAnotherClass) {
    const guid_bytes unknown = guid(class_id::nobody);
    for (raw_record* const record : service_records()) {
        hand_made_service held;
        void* out = &held;
        EXPECT_FALSE(call<bool>(service_of(record), service_slot::query, &out, &unknown));
        EXPECT_EQ(out, &held);
        EXPECT_EQ(held.references, 1U);
    }
}

TEST(VersionRecord, GivesItsTexts) {
    EXPECT_EQ(version_text(version_slot::get_component_name), "Brellix");
    EXPECT_EQ(version_text(version_slot::get_version), "2.0 beta 12");
    EXPECT_EQ(version_text(version_slot::get_about), "Standard effects for Velmora.\n"
                                                     "By the two authors of Brellix.\n"
                                                     "Advanced Limiter: thanks to its author.\n"
                                                     "RetroArch resampler: the RetroArch team, 2010-2018.");
}

TEST(VersionRecord, GivesTheFileNameThatTheHostHasSet) {
    for (const char* const name : {"kelvane.dll", "\xC3\xA9\xC3\xA8.dll", ""}) {
        set_module_names("/somewhere/else", name);
        EXPECT_EQ(version_text(version_slot::get_file_name), name);
    }
}

TEST(FileNameCheck, ComparesTheLastComponentOfThePath) {
    struct row {
        const char* path;
        bool expected;
    };
    const row rows[] = {
        {"C:\\x\\kelvane.dll", true}, {"/a/b/kelvane.dll", true}, {"kelvane.dll", true},
        {"d|kelvane.dll", true},      {"x:kelvane.dll", true},    {"C:\\x/y\\kelvane.dll", true},
        {"KELVANE.DLL", false},       {"a/kelvane.dll/", false},  {"", false},
        {"xkelvane.dll", false},      {"kelvane.dll.bak", false}, {"kelvane.dll\\other.dll", false},
    };
    void* const check = only_service(class_id::file_name_check);
    for (const auto& [path, expected] : rows) {
        set_module_names(path, "kelvane.dll");
        EXPECT_EQ(call<bool>(check, name_check_slot::is_file_name_expected), expected) << path;
    }
}

} // namespace
} // namespace abi_test
