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
    {"Resampler (RetroArch)", {stereo_to_48_khz, {0x80, 0xBB, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0}}},
    {"Resampler (RetroArch)", {stereo_to_48_khz_at_best, {0x80, 0xBB, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0}}},
    {"Resampler (dBpoweramp/SSRC)", {stereo_to_48_khz, {0x80, 0xBB, 0, 0}}},
    {"Resampler (dBpoweramp/SSRC)", {stereo_to_32_khz, {0, 0x7D, 0, 0}}},
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
    benchmark::RegisterBenchmark((effect.name + "/" + measured.input.name).c_str(), run)->UseRealTime();
}

void play_track(velmora::effect_instance& effect, refilled_block& block, std::uint32_t flags_at_end) {
    for (std::size_t i = 1; i < track_blocks; ++i) {
        effect.run(&block.fill(), nullptr, 0);
    }
    effect.run(&block.fill(), nullptr, flags_at_end);
}

/// Each iteration is an album of two tracks; the name's input says so.
void register_album(const host::effect_entry& effect) {
    const auto run = [&effect](benchmark::State& state) {
        const auto instance = host::instantiate(effect, effect.default_preset);
        refilled_block block(stereo);
        for (auto _ : state) {
            play_track(*instance, block, velmora::run_flag::end_of_track);
            play_track(*instance, block, velmora::run_flag::end_of_playback);
        }
        count_speed(state, 2 * track_blocks);
    };
    benchmark::RegisterBenchmark((effect.name + "/stereo, two tracks").c_str(), run)->UseRealTime();
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
    register_album(catalogue.find("Crossfader"));
}

} // namespace bench
