#include "host/module/effect_catalogue.h"

#include "tests/support/built_module.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

namespace {

using testing_support::built_effects;
using testing_support::thrown_text;

TEST(EffectCatalogue, FindsByNameGuidAndAbbreviation) {
    struct row {
        const char* typed;
        const char* name;
    };
    const row table[] = {
        {"Hard -6dB limiter", "Hard -6dB limiter"},
        {"hard -6DB LIMITER", "Hard -6dB limiter"},
        {"hard", "Hard -6dB limiter"},
        {"h lim", "Hard -6dB limiter"},
        {"{CB592C20-2E33-4972-925F-3FBB6BDBA9BF}", "Hard -6dB limiter"},
        {"cb592c20-2e33-4972-925f-3fbb6bdba9bf", "Hard -6dB limiter"},
        {"down mono", "Downmix channels to mono"},
        {"mono to", "Convert mono to stereo"},
        {"conv 4", "Convert stereo to 4 channels"},
        {"rear", "Move stereo to rear channels"},
        {"up 7", "Upmix to 7.1"},
        {"layout_converter", "layout_converter"},
        {"layout_l", "layout_limiter"},
        {"{b3bdc598-c578-4662-8288-d177b2155db2}", "layout_converter"},
    };
    for (const row& line : table) {
        EXPECT_EQ(built_effects().find(line.typed).name, line.name) << line.typed;
    }
}

TEST(EffectCatalogue, SaysWhenNothingOrMoreThanOneFits) {
    EXPECT_EQ(thrown_text<host::effect_name_error>([] { built_effects().find("reverb"); }),
              "no effect is called \"reverb\"; `kelvane-host list` shows them");
    EXPECT_EQ(thrown_text<host::effect_name_error>([] { built_effects().find("convert"); }),
              "\"convert\" could be \"Convert stereo to 4 channels\", \"Convert mono to stereo\"");
    for (const auto* const typed : {"", " "}) {
        EXPECT_EQ(thrown_text<host::effect_name_error>([&] { built_effects().find(typed); }),
                  "the name of an effect is empty; `kelvane-host list` shows the names");
    }
    for (const auto* const typed : {"mono down", "{00000000-0000-0000-0000-000000000000}"}) {
        EXPECT_THROW(built_effects().find(typed), host::effect_name_error) << typed;
    }
}

TEST(EffectCatalogue, HiddenEffectsHaveNamesAndPresetsOfTheHosts) {
    const auto& effect = built_effects().find("layout_converter");
    EXPECT_TRUE(effect.is_hidden());
    EXPECT_FALSE(effect.has_dialog);
    EXPECT_EQ(effect.default_preset.owner(), effect.identity);
    EXPECT_EQ(effect.default_preset.payload().size(), 4U);
    EXPECT_NE(host::instantiate(effect, effect.default_preset), nullptr);
    EXPECT_FALSE(built_effects().find("hard").is_hidden());
}

TEST(EffectCatalogue, ARefusedPresetIsSaid) {
    const auto& effect = built_effects().find("hard");
    host::preset with_payload = effect.default_preset;
    with_payload.set_data("x", 1);
    EXPECT_EQ(thrown_text<host::preset_error>([&] { host::instantiate(effect, with_payload); }),
              "the preset does not fit the effect \"Hard -6dB limiter\"");
}

} // namespace
