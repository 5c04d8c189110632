#include "bench/effects_bench.h"

#include "bench/bench_blocks.h"
#include "host/module/effect_catalogue.h"

#include <benchmark/benchmark.h>

#include <map>

namespace bench {

namespace {

/// An input, and the settings that make the effect change it; the default preset when there are none.
struct effect_case {
    material input;
    std::vector<std::uint8_t> payload;
};

/// Effects that are not listed get stereo.
const std::multimap<std::string, effect_case> cases{
    {"Convert mono to stereo", {mono, {}}},
    {"Downmix channels to stereo", {surround, {}}},
    {"Downmix channels to mono", {surround, {}}},
    {"Upmix to 7.1", {stereo, {}}},
    {"Upmix to 7.1", {surround, {}}},
    {"layout_converter", {surround, {0x3, 0, 0, 0}}},
    {"layout_converter", {surround_7_1, {0x3F, 0, 0, 0}}},
    {"layout_limiter", {surround_7_1, {0x3F, 0, 0, 0}}},
    {"Advanced Limiter", {stereo_below_full_scale, {}}},
    {"Advanced Limiter", {stereo_above_full_scale, {}}},
    {"Advanced Limiter", {surround_below_full_scale, {}}},
    {"Advanced Limiter", {surround_above_full_scale, {}}},
    {"Skip Silence", {stereo, {}}},
    {"Skip Silence", {stereo_silent, {}}},
};

std::vector<effect_case> cases_of(const std::string& effect) {
    std::vector<effect_case> found;
    const auto [first, last] = cases.equal_range(effect);
    for (auto entry = first; entry != last; ++entry) {
        found.push_back(entry->second);
    }
    return found.empty() ? std::vector<effect_case>{{stereo, {}}} : found;
}

void register_case(const host::effect_entry& effect, const effect_case& measured) {
    const auto run = [&effect, measured](benchmark::State& state) {
        host::preset settings = effect.default_preset;
        if (!measured.payload.empty()) {
            settings.set_data(measured.payload.data(), measured.payload.size());
        }
        const auto instance = host::instantiate(effect, settings);
        refilled_block block(measured.input);
        for (auto _ : state) {
            instance->run(&block.fill(), nullptr, 0);
        }
        count_speed(state);
    };
    benchmark::RegisterBenchmark((effect.name + "/" + measured.input.name).c_str(), run);
}

/// Each call is a track: one block is held, and the next mixed with it.
void register_fades(const host::effect_entry& effect) {
    benchmark::RegisterBenchmark((effect.name + ", every other block a fade/" + stereo.name).c_str(),
                                 [&](benchmark::State& state) {
                                     const auto instance = host::instantiate(effect, effect.default_preset);
                                     refilled_block block(stereo);
                                     for (auto _ : state) {
                                         instance->run(&block.fill(), nullptr, velmora::run_flag::end_of_track);
                                     }
                                     count_speed(state);
                                 });
}

} // namespace

void register_effects(const std::filesystem::path& module_file) {
    // Both live until the program ends: the benchmarks run later.
    static const host::loaded_module module(module_file, nullptr);
    static const host::effect_catalogue catalogue(module);
    for (const host::effect_entry& effect : catalogue.effects()) {
        for (const effect_case& measured : cases_of(effect.name)) {
            register_case(effect, measured);
        }
    }
    register_fades(catalogue.find("Crossfader"));
}

} // namespace bench
