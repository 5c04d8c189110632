#include "tests/abi/hand_made_values.h"
#include "tests/abi/module_under_test.h"
#include "tests/abi/slots.h"

#include <gtest/gtest.h>

namespace abi_test {
namespace {

struct named_effect {
    const char* identity;
    const char* name;
};

guid_bytes identity_of(void* factory) {
    guid_bytes identity{};
    call<void>(factory, factory_slot::get_identity, &identity);
    return identity;
}

std::string name_of(void* factory) {
    hand_made_text name;
    call<void>(factory, factory_slot::get_name, &name);
    EXPECT_EQ(name.length, name.text.size()) << name.text; // its own, and not "up to the zero"
    return name.text;
}

hand_made_preset default_preset_of(void* factory) {
    hand_made_preset preset;
    preset.payload = {1, 2, 3}; // must not stay
    call<void>(factory, factory_slot::get_default_preset, &preset);
    return preset;
}

bool instantiate(void* factory, void** out, const hand_made_preset& preset) {
    return call<bool>(factory, factory_slot::instantiate, out, &preset);
}

bool edit_settings(void* factory, hand_made_preset& preset) {
    return call<bool>(factory, factory_slot::edit_settings, &preset, static_cast<void*>(nullptr));
}

TEST(FactorySlots, EffectsAreFoundByIdentityAndName) {
    const named_effect effects[] = {
        {"{866233BB-C466-43E6-AFC4-8B7BE563D912}", "Downmix channels to stereo"},
        {"{EFC441DD-C7B4-4F34-974A-D3058F3A1BDE}", "Downmix channels to mono"},
        {"{F661D118-5627-40AD-AB31-CCCF71A4819D}", "Convert mono to stereo"},
        {"{45BAE3C0-10B1-4008-BAAC-C5E6CEB06BA2}", "Reverse stereo channels"},
        {"{7AAB4CE8-414A-427E-8228-78CD4A47388F}", "Convert stereo to 4 channels"},
        {"{E24420A0-5DC6-4EE1-8AE2-02452E8D8DFB}", "Move stereo to rear channels"},
        {"{CB592C20-2E33-4972-925F-3FBB6BDBA9BF}", "Hard -6dB limiter"},
        {"{0860E415-B70D-4453-AFE7-A0964C4B162F}", "Skip Silence"},
        {"{11B13A25-C282-41F6-B1F0-CEB7ECBCEAA8}", "Advanced Limiter"},
        {"{ABA20225-956A-45D9-93D6-9FDC8B9B4633}", "Upmix to 5.1"},
        {"{66131A69-35E4-4323-83B0-0737595D8507}", "Upmix to 7.1"},
        {"{AD158637-3B75-4749-A285-50362DCAF461}", "Crossfader"},
        {"{421C3E6E-F642-465D-8DBD-DEE5287561D6}", "Resampler (RetroArch)"},
        {"{4D26D35C-5DA8-4F9C-AE8F-5A4C8B8FEE40}", "Resampler (dBpoweramp/SSRC)"},
        {"{D487D723-FD8C-4106-9023-5620AEA0A885}", "Meier Crossfeed"},
    };
    for (const auto& [identity, name] : effects) {
        EXPECT_EQ(name_of(factory_of(identity)), name) << identity;
    }
}

TEST(FactorySlots, TheDefaultPresetIsTheEffectsOwn) {
    for (void* const factory : effect_factories()) {
        EXPECT_EQ(default_preset_of(factory).owner, identity_of(factory)) << name_of(factory);
    }
}

TEST(FactorySlots, TheDefaultPresetMakesAnInstanceWithOneReference) {
    for (void* const factory : effect_factories()) {
        void* instance = nullptr;
        ASSERT_TRUE(instantiate(factory, &instance, default_preset_of(factory))) << name_of(factory);
        EXPECT_EQ(call<std::uint32_t>(instance, service_slot::release), 0U) << name_of(factory);
    }
}

TEST(FactorySlots, ANewInstanceTakesThePlaceOfTheOneHeld) {
    for (void* const factory : effect_factories()) {
        hand_made_service held;
        void* out = &held;
        ASSERT_TRUE(instantiate(factory, &out, default_preset_of(factory))) << name_of(factory);
        EXPECT_EQ(held.references, 0U) << name_of(factory);
        EXPECT_EQ(call<std::uint32_t>(out, service_slot::release), 0U) << name_of(factory);
    }
}

TEST(FactorySlots, APresetOfAnotherOwnerIsRefusedAndLeavesTheAnswerAlone) {
    for (void* const factory : effect_factories()) {
        hand_made_preset preset = default_preset_of(factory);
        preset.owner = guid(class_id::nobody);
        hand_made_service held;
        void* out = &held;
        EXPECT_FALSE(instantiate(factory, &out, preset)) << name_of(factory);
        EXPECT_EQ(out, &held) << name_of(factory);
        EXPECT_EQ(held.references, 1U) << name_of(factory);
    }
}

TEST(FactorySlots, APlainEffectRefusesAPayload) {
    void* const factory = factory_of("{F661D118-5627-40AD-AB31-CCCF71A4819D}");
    hand_made_preset preset = default_preset_of(factory);
    EXPECT_EQ(preset.payload.size(), 0U);
    preset.payload = {0};
    void* out = nullptr;
    EXPECT_FALSE(instantiate(factory, &out, preset));
    EXPECT_EQ(out, nullptr);
}

TEST(FactorySlots, AnEffectWithoutADialogDoesNotEdit) {
    std::size_t seen = 0;
    for (void* const factory : effect_factories()) {
        if (call<bool>(factory, factory_slot::has_settings_dialog)) {
            continue;
        }
        hand_made_preset preset;
        preset.payload = {7};
        EXPECT_FALSE(edit_settings(factory, preset)) << name_of(factory);
        EXPECT_EQ(preset.payload, std::vector<std::uint8_t>{7}) << name_of(factory);
        EXPECT_EQ(preset.owner, guid_bytes{}) << name_of(factory);
        ++seen;
    }
    EXPECT_GE(seen, 7U);
}

constexpr auto resampler = "{421C3E6E-F642-465D-8DBD-DEE5287561D6}";
constexpr auto fft_resampler = "{4D26D35C-5DA8-4F9C-AE8F-5A4C8B8FEE40}";

TEST(FactorySlots, AConverterAnswersToItsClassAndToItsBases) {
    for (const auto* const identity : {resampler, fft_resampler}) {
        void* const factory = factory_of(identity);
        for (const auto asked :
             {class_id::effect_factory, class_id::effect_factory_with_dialog, class_id::resampler_factory}) {
            const guid_bytes asked_class = guid(asked);
            void* out = nullptr;
            EXPECT_TRUE(call<bool>(factory, service_slot::query, &out, &asked_class)) << identity << ' ' << asked;
            EXPECT_EQ(out, factory) << identity << ' ' << asked;
        }
    }
    const guid_bytes resampler_class = guid(class_id::resampler_factory);
    void* out = nullptr;
    void* const another = factory_of("{D487D723-FD8C-4106-9023-5620AEA0A885}"); // with a dialog too
    EXPECT_FALSE(call<bool>(another, service_slot::query, &out, &resampler_class));
}

TEST(FactorySlots, AConverterTellsWhatItConverts) {
    struct row {
        const char* identity;
        std::uint32_t source_hz;
        std::uint32_t target_hz;
        bool expected;
    };
    for (const row& line :
         {row{resampler, 44100, 48000, true}, row{resampler, 48000, 8000, true}, row{resampler, 0, 48000, false},
          row{resampler, 48000, 0, false}, row{resampler, 384000, 1500, false}, row{fft_resampler, 44100, 48000, true},
          row{fft_resampler, 384000, 1500, true}, row{fft_resampler, 0, 48000, false},
          row{fft_resampler, 48000, 0, false}, row{fft_resampler, 12000, 352800, false}}) {
        EXPECT_EQ(call<bool>(factory_of(line.identity), factory_slot::is_conversion_supported, line.source_hz,
                             line.target_hz),
                  line.expected)
            << line.identity << ' ' << line.source_hz << " to " << line.target_hz;
    }
}

TEST(FactorySlots, AConverterMakesPresets) {
    struct row {
        const char* identity;
        double quality;
        std::uint8_t level;
    };
    for (const auto& [identity, quality, level] :
         {row{resampler, 0.0, 0}, row{resampler, 0.2, 1}, row{resampler, 0.5, 2}, row{resampler, 0.6, 3},
          row{resampler, 1.0, 4}, row{fft_resampler, 0.0, 0}, row{fft_resampler, 1.0, 0}}) {
        hand_made_preset preset;
        preset.payload = {1, 2, 3};
        call<void>(factory_of(identity), factory_slot::make_preset, &preset, std::uint32_t{96000}, quality);
        EXPECT_EQ(preset.owner, guid(identity)) << quality;
        EXPECT_EQ(preset.payload, (std::vector<std::uint8_t>{0, 0x77, 1, 0, level, 0, 0, 0, 0, 0, 0, 0, 0})) << quality;
    }
}

#ifndef _WIN32
TEST(FactorySlots, ADialogThatIsAskedForSaysWhereThereAreNone) {
    for (const auto* const identity : {resampler, fft_resampler, "{D487D723-FD8C-4106-9023-5620AEA0A885}"}) {
        void* const factory = factory_of(identity);
        const hand_made_preset preset = default_preset_of(factory);
        hand_made_service callback; // is never called: any object will do
        std::string said;
        try {
            call<void>(factory, factory_slot::show_settings_dialog, &preset, static_cast<void*>(nullptr), &callback);
        } catch (const std::exception& failure) {
            said = failure.what();
        }
        EXPECT_EQ(said, "Feature not implemented") << identity;
    }
}

TEST(FactorySlots, AnEffectWithADialogSaysWhereThereAreNone) {
    void* const factory = factory_of("{D487D723-FD8C-4106-9023-5620AEA0A885}");
    EXPECT_TRUE(call<bool>(factory, factory_slot::has_settings_dialog));
    hand_made_preset preset = default_preset_of(factory);
    std::string said;
    try {
        edit_settings(factory, preset);
    } catch (const std::exception& failure) {
        said = failure.what();
    }
    EXPECT_EQ(said, "Feature not implemented");
}
#endif

} // namespace
} // namespace abi_test
