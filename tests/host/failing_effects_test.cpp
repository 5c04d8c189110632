#include "host/chain/effect_chain.h"
#include "host/module/effect_catalogue.h"
#include "host/objects/abort_switch.h"
#include "host/objects/block_list.h"
#include "tests/support/built_module.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

using testing_support::thrown_text;

#ifdef _WIN32
constexpr auto unruly_file = "unruly.dll";
constexpr auto outdated_file = "outdated.dll";
#else
constexpr auto unruly_file = "unruly.so";
constexpr auto outdated_file = "outdated.so";
#endif

host::effect_chain chain_of(const host::effect_catalogue& catalogue, const char* name) {
    host::effect_chain chain;
    const auto& effect = catalogue.find(name);
    chain.append(effect.name, host::instantiate(effect, effect.default_preset));
    return chain;
}

TEST(FailingEffects, WhatAModuleThrowsOutlivesItsLibrary) {
    std::optional<std::string> said;
    try {
        const host::loaded_module module(unruly_file, nullptr);
        const host::effect_catalogue catalogue(module);
        host::preset settings = catalogue.effects().front().default_preset;
        settings.set_data("x", 1);
        host::instantiate(catalogue.effects().front(), settings);
    } catch (const std::exception& failure) { // the library is gone by now
        said = failure.what();
    }
    EXPECT_EQ(said, "the preset does not fit the effect \"Unruly\": the module's own words");
}

TEST(FailingEffects, AnEffectThatThrowsIsNamed) {
    const host::loaded_module module(unruly_file, nullptr);
    const host::effect_catalogue catalogue(module);
    host::effect_chain chain = chain_of(catalogue, "unruly");
    host::block_list list;
    host::abort_switch abort;
    EXPECT_EQ(thrown_text<host::effect_failure>([&] { chain.run(list, nullptr, 0, abort); }),
              "\"Unruly\" failed: the module's own words");
}

TEST(FailingEffects, AnEffectThatGivesUpOnTheSignalIsNoFailure) {
    const host::loaded_module module(unruly_file, nullptr);
    const host::effect_catalogue catalogue(module);
    host::effect_chain chain = chain_of(catalogue, "unruly");
    host::block_list list;
    host::abort_switch abort;
    abort.trigger();
    EXPECT_THROW(chain.run(list, nullptr, 0, abort), host::interrupted);
}

TEST(FailingEffects, AModuleOfAnotherVersionIsRefused) {
    EXPECT_EQ(thrown_text<host::module_error>([] { const host::loaded_module module(outdated_file, nullptr); }),
              std::string(outdated_file) + " speaks another version of the module interface than 81");
}

TEST(EffectChain, TheLatencyIsTheSumOfItsEffects) {
    const host::loaded_module module(unruly_file, nullptr);
    const host::effect_catalogue catalogue(module);
    host::effect_chain chain = chain_of(catalogue, "unruly");
    EXPECT_EQ(chain.latency_s(), 0.25);
    const auto& effect = catalogue.find("unruly");
    chain.append(effect.name, host::instantiate(effect, effect.default_preset));
    EXPECT_EQ(chain.latency_s(), 0.5);
}

} // namespace
