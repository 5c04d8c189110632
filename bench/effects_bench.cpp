#include "bench/effects_bench.h"

#include "host/module/effect_catalogue.h"
#include "host/objects/block_list.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace bench {

namespace {

constexpr std::uint32_t rate_hz = 44100;
constexpr std::size_t block_frames = 4096;

struct layout {
    std::uint32_t channels;
    std::uint32_t channel_mask;
    std::string name;
};

const layout mono{1, 0x4, "mono"};
const layout stereo{2, 0x3, "stereo"};
const layout surround{6, 0x3F, "5.1"};

/// What each effect is fed with: a layout that it changes. Others get stereo.
const std::map<std::string, layout> layouts{
    {"Convert mono to stereo", mono},
    {"Downmix channels to stereo", surround},
    {"Downmix channels to mono", surround},
};

const layout& layout_for(const std::string& effect) {
    const auto found = layouts.find(effect);
    return found == layouts.end() ? stereo : found->second;
}

std::vector<double> full_scale_noise(std::size_t samples) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> made(samples);
    for (double& sample : made) {
        sample = uniform(random);
    }
    return made;
}

/// One block that is filled again for each iteration.
class refilled_block {
public:
    explicit refilled_block(const layout& format)
        : format_(format), source_(full_scale_noise(block_frames * format.channels)) {}

    host::block_list& fill() {
        while (list_.get_count() > 1) { // what an effect emitted
            list_.remove_item(list_.get_count() - 1);
        }
        if (list_.get_count() == 0) {
            list_.append(host::block(source_, rate_hz, format_.channels, format_.channel_mask));
        }
        host::block& block = list_.at(0);
        block.set_data_size(source_.size());
        std::copy(source_.begin(), source_.end(), block.get_data());
        block.set_sample_rate(rate_hz);
        block.set_channels(format_.channels, format_.channel_mask);
        block.set_sample_count(block_frames);
        return list_;
    }

private:
    layout format_;
    std::vector<double> source_;
    host::block_list list_;
};

void count_speed(benchmark::State& state) {
    const double seconds = static_cast<double>(state.iterations()) * block_frames / rate_hz;
    state.counters["x_real_time"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
}

void register_copy(const layout& format) {
    benchmark::RegisterBenchmark(("copy/" + format.name).c_str(), [format](benchmark::State& state) {
        refilled_block block(format);
        for (auto _ : state) {
            benchmark::DoNotOptimize(block.fill().at(0).get_data());
            benchmark::ClobberMemory();
        }
        count_speed(state);
    });
}

void register_effect(const host::effect_entry& effect) {
    const layout& format = layout_for(effect.name);
    benchmark::RegisterBenchmark((effect.name + "/" + format.name).c_str(), [&](benchmark::State& state) {
        const auto instance = host::instantiate(effect, effect.default_preset);
        refilled_block block(layout_for(effect.name));
        for (auto _ : state) {
            instance->run(&block.fill(), nullptr, 0);
        }
        count_speed(state);
    });
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
    for (const layout& format : {mono, stereo, surround}) {
        register_copy(format);
    }
    for (const host::effect_entry& effect : catalogue.effects()) {
        register_effect(effect);
    }
    register_fades(catalogue.find("Crossfader"));
}

} // namespace bench
