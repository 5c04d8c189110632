#include "effects/effect_settings.h"
#include "frame/exceptions.h"
#include "host/audio/audio_error.h"
#include "host/settings/preset_file.h"
#include "host/settings/step_text.h"
#include "host/settings/worded_settings.h"
#include "tests/support/built_module.h"
#include "tests/support/signals.h"
#include "tests/support/thrown_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace host {
namespace {

using testing_support::built_effects;
using testing_support::thrown_text;

/// A number and a list, as a converter has them; the payload is the number's byte and the list's text.
struct listed_settings {
    static constexpr velmora::guid identity{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    std::int32_t number = 7;
    std::string list;

    static listed_settings read(std::span<const std::byte> payload) {
        listed_settings settings;
        if (!payload.empty()) {
            settings.number = std::to_integer<std::int32_t>(payload[0]);
            for (const std::byte letter : payload.subspan(1)) {
                settings.list += static_cast<char>(letter);
            }
        }
        return settings;
    }
    std::vector<std::byte> write() const {
        std::vector<std::byte> payload{static_cast<std::byte>(number)};
        for (const char letter : list) {
            payload.push_back(static_cast<std::byte>(letter));
        }
        return payload;
    }
};

const kelvane::struct_words<listed_settings>& listed_words() {
    static const kelvane::struct_words<listed_settings> words({
        kelvane::number_field({.name = "number", .unit = "", .range = "a number", .meaning = "it"},
                              &listed_settings::number),
        {{.name = "list", .unit = "", .range = "a list", .meaning = "it", .takes_rest = true},
         [](const listed_settings& settings) { return settings.list; },
         [](listed_settings& settings, std::string_view text) {
             settings.list = text;
             return true;
         }},
    });
    return words;
}

std::string strength_after(const std::string& words) {
    preset settings = built_effects().find("Meier Crossfeed").default_preset;
    change_settings(settings, words);
    return describe_settings(settings).at(0).value;
}

std::string refusal_of(const std::string& words) {
    return thrown_text<settings_text_error>([&] { strength_after(words); });
}

TEST(StepText, IsCutAtTheFirstColon) {
    struct row {
        std::string_view text;
        std::string_view effect;
        std::string_view settings;
    };
    for (const row& line : {row{"hard", "hard", ""}, row{"Meier Crossfeed:strength=1", "Meier Crossfeed", "strength=1"},
                            row{"a:", "a", ""}, row{"a:b=c:d", "a", "b=c:d"}, row{"", "", ""}}) {
        EXPECT_EQ(split_step(line.text).effect, line.effect) << line.text;
        EXPECT_EQ(split_step(line.text).settings, line.settings) << line.text;
    }
}

TEST(WordedSettings, TellNameUnitRangeDefaultAndValue) {
    preset settings = built_effects().find("Meier Crossfeed").default_preset;
    change_settings(settings, "strength=1500");
    const auto fields = describe_settings(settings);
    ASSERT_EQ(fields.size(), 1U);
    EXPECT_EQ(fields[0].name, "strength");
    EXPECT_EQ(fields[0].unit, "");
    EXPECT_THAT(fields[0].range,
                testing::HasSubstr("100 to 10000 in steps of 100 in the dialog, shown there divided by 100"));
    EXPECT_EQ(fields[0].default_value, "1000");
    EXPECT_EQ(fields[0].value, "1500");
}

TEST(WordedSettings, TellTheRateThatTheyWant) {
    const struct {
        const char* effect;
        const char* settings;
        std::uint32_t rate_hz;
        std::uint32_t wanted_hz;
    } cases[]{{"ssrc", "rate=96000", 44100, 96000},
              {"ssrc", "rate=96000,exclude=32000;44000-45000", 44100, 44100},
              {"ssrc", "rate=96000,exclude=32000;44000-45000", 48000, 96000},
              {"retro", "rate=96000", 44100, 96000},
              {"retro", "rate=96000,exclude=44100", 44100, 44100},
              {"meier", "strength=96000", 44100, 44100},
              {"Reverse stereo channels", "", 44100, 44100}};
    for (const auto& [effect, assignments, rate_hz, wanted_hz] : cases) {
        preset settings = built_effects().find(effect).default_preset;
        if (*assignments != '\0') {
            change_settings(settings, assignments);
        }
        EXPECT_EQ(wanted_rate_hz(settings, rate_hz), wanted_hz) << effect << ' ' << assignments << ' ' << rate_hz;
    }
}

TEST(WordedSettings, AValueMayBeQuotedAndTheLastAssignmentWins) {
    EXPECT_EQ(strength_after("strength=1500"), "1500");
    EXPECT_EQ(strength_after("strength=\"1500\""), "1500");
    EXPECT_EQ(strength_after("strength=-2147483648"), "-2147483648");
    EXPECT_EQ(strength_after("strength=1,strength=\"2\",strength=3"), "3");
    EXPECT_EQ(strength_after(""), "1000");
}

TEST(WordedSettings, SayWhatTheyDoNotTake) {
    for (const auto* const words : {"strength=", "strength=x", "strength=1.5", "strength= 1", "strength=1x",
                                    "strength=2147483648", "strength=-2147483649", "strength=99999999999999999999"}) {
        EXPECT_THAT(refusal_of(words), testing::StartsWith("strength takes ")) << words;
    }
    EXPECT_EQ(refusal_of("power=1"), "there is no setting \"power\"; there is strength");
    EXPECT_EQ(refusal_of("strength"), "\"strength\" is not of the form field=value");
    EXPECT_EQ(refusal_of("strength=\"1"), "a quotation mark is not closed");
    EXPECT_EQ(refusal_of("strength=\"1\"2"), "a comma must follow \"1\"");
}

TEST(WordedSettings, ARefusalChangesNothing) {
    preset settings = built_effects().find("Meier Crossfeed").default_preset;
    EXPECT_THROW(change_settings(settings, "strength=1,strength=x"), settings_text_error);
    EXPECT_EQ(describe_settings(settings).at(0).value, "1000");
}

TEST(WordedSettings, AnEffectWithoutSettingsHasNone) {
    preset settings = built_effects().find("hard").default_preset;
    EXPECT_TRUE(describe_settings(settings).empty());
    EXPECT_EQ(thrown_text<settings_text_error>([&] { change_settings(settings, "a=b"); }),
              "the effect has no settings");
}

std::string mask_after(const std::string& words) {
    preset settings = built_effects().find("layout_converter").default_preset;
    change_settings(settings, words);
    return describe_settings(settings).at(0).value;
}

TEST(WordedSettings, ALayoutHasNamesAndAMask) {
    struct row {
        const char* typed;
        const char* shown;
    };
    const row table[] = {
        {"mono", "mono"},
        {"1.0", "mono"},
        {"stereo", "stereo"},
        {"2.0", "stereo"},
        {"Stereo", "stereo"},
        {"2.1", "2.1"},
        {"3.0", "3.0"},
        {"4.0", "quad"},
        {"QUAD", "quad"},
        {"4.1", "4.1"},
        {"5.0", "5.0"},
        {"5.1", "5.1"},
        {"5.1(back)", "5.1"},
        {"5.1 (side)", "5.1 (side)"},
        {"5.1side", "5.1 (side)"},
        {"6.1", "6.1"},
        {"7.1", "7.1"},
        {"rear", "rear pair"},
        {"rear pair", "rear pair"},
        {"0x3", "stereo"},
        {"0X60f", "5.1 (side)"},
        {"0xfFfFfFfF", "0xFFFFFFFF"},
        {"0x0", "0x0"},
        {"0xa1", "0xA1"},
    };
    for (const row& line : table) {
        EXPECT_EQ(mask_after(std::string("mask=") + line.typed), line.shown) << line.typed;
    }
}

TEST(WordedSettings, WhatIsNoLayoutIsRefused) {
    for (const auto* const typed : {"", "9.9", "3", "0x", "x3", "0x100000000", "0x3 ", "0xg", "-0x3", "0x-3", "5.1s"}) {
        EXPECT_THAT(thrown_text<settings_text_error>([&] { mask_after(std::string("mask=") + typed); }),
                    testing::AllOf(testing::StartsWith("mask takes mono, stereo, "), testing::HasSubstr("0x60F")))
            << typed;
    }
}

TEST(SettingsCatalogue, HasTheWordsOfEveryEffectWithSettings) {
    for (const effect_entry& effect : built_effects().effects()) {
        const kelvane::settings_words* const words = kelvane::find_settings_words(effect.identity);
        ASSERT_EQ(words != nullptr, effect.has_dialog || effect.is_hidden()) << effect.name;
        if (words != nullptr) {
            EXPECT_EQ(words->defaults(), effect.default_preset.payload()) << effect.name;
        }
    }
}

TEST(SettingsCatalogue, NoPayloadOfRandomBytesDoesHarm) {
    testing_support::random_source random(1);
    for (const effect_entry& effect : built_effects().effects()) {
        preset fuzzed = effect.default_preset;
        for (int round = 0; round < 100; ++round) {
            std::vector<std::uint8_t> payload(testing_support::pick(random, 0, round % 3 == 0 ? 65536 : 40));
            std::generate(payload.begin(), payload.end(), [&] { return static_cast<std::uint8_t>(random()); });
            fuzzed.set_data(payload.data(), payload.size());
            try {
                EXPECT_EQ(describe_settings(fuzzed).empty(), !(effect.has_dialog || effect.is_hidden())) << effect.name;
            } catch (const velmora_io::exception_io_data&) {
                EXPECT_EQ(effect.name, "Resampler (dBpoweramp/SSRC)"); // the one that refuses a rate
            }
        }
    }
}

TEST(SettingsWords, ReadAndChangeThePlainStruct) {
    EXPECT_EQ(listed_words().values({}), (std::vector<std::string>{"7", ""}));
    EXPECT_EQ(listed_words().with({}, "number", "9"), std::vector<std::byte>{std::byte{9}});
}

TEST(WordedSettings, AListTakesEverythingToTheEndUnlessItIsQuoted) {
    struct row {
        std::string words;
        std::string number;
        std::string list;
    };
    const row table[] = {
        {"number=3,list=44100,88200-96000;1", "3", "44100,88200-96000;1"},
        {"list=44100,number=3", "7", "44100,number=3"},
        {"list=\"44100,88200\",number=3", "3", "44100,88200"},
        {"list=", "7", ""},
        {"list=\"\"", "7", ""},
    };
    for (const row& line : table) {
        const auto payload = changed_payload(listed_words(), {}, line.words);
        EXPECT_EQ(listed_words().values(payload), (std::vector<std::string>{line.number, line.list})) << line.words;
    }
}

class PresetFile : public testing::Test {
protected:
    ~PresetFile() override { std::filesystem::remove(file_); }
    void write(const std::string& text) { std::ofstream(file_, std::ios::binary) << text; }
    std::string refusal() {
        return thrown_text<preset_file_error>([this] { read_preset_file(file_); });
    }

    std::filesystem::path file_ =
        std::filesystem::temp_directory_path() / ("kelvane preset " + std::to_string(std::random_device()()) + ".json");
};

TEST_F(PresetFile, GivesBackWhatWasWritten) {
    preset written = built_effects().find("Meier Crossfeed").default_preset;
    change_settings(written, "strength=1500");
    write_preset_file(file_, written);
    const preset read = read_preset_file(file_);
    EXPECT_EQ(read.owner(), written.owner());
    EXPECT_EQ(read.payload(), written.payload());
}

TEST_F(PresetFile, AFileThatCannotBeReadIsToldLikeAnyOther) {
    EXPECT_THAT(thrown_text<audio_error>([this] { read_preset_file(file_); }),
                testing::EndsWith(".json: there is no such file"));
    std::filesystem::create_directory(file_);
    EXPECT_THAT(thrown_text<audio_error>([this] { read_preset_file(file_); }), testing::EndsWith(".json: is a folder"));
}

TEST_F(PresetFile, AnythingElseIsNoPreset) {
    for (const auto* const text :
         {"", "text", "[]", "{}", R"({"owner": 1, "payload": ""})", R"({"owner": "x", "payload": ""})",
          R"({"owner": "{D487D723-FD8C-4106-9023-5620AEA0A885}"})",
          R"({"owner": "{D487D723-FD8C-4106-9023-5620AEA0A885}", "payload": "0"})"}) {
        write(text);
        EXPECT_THAT(refusal(), testing::EndsWith("is no preset file")) << text;
    }
    write(std::string(2'000'000, ' ') + R"({"owner": "{D487D723-FD8C-4106-9023-5620AEA0A885}", "payload": ""})");
    EXPECT_THAT(refusal(), testing::EndsWith("is no preset file")) << "far too long";
}

} // namespace
} // namespace host
