#include "bench/peers_bench.h"

#include "bench/bench_blocks.h"
#include "bench/ffmpeg_filter.h"
#include "tests/support/literal_limiter.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace bench {

namespace {

/// A chain of ffmpeg's that does what an effect does.
struct filter_peer {
    std::string effect;
    material input;
    std::string name;
    std::string chain;
};

const std::string alimiter = "alimiter=level=disabled:limit=1:attack=5.8:release=23";
const std::string silenceremove = "silenceremove=stop_periods=-1:stop_duration=5:stop_threshold=-60dB:detection=peak";

const std::vector<filter_peer> filter_peers{
    {"Upmix to 5.1", stereo, "ffmpeg pan to 5.1", "pan=5.1|FL=FL|FR=FR|FC=0.5*FL+0.5*FR|BL=FL|BR=FR"},
    {"Upmix to 7.1", stereo, "ffmpeg pan to 7.1", "pan=7.1|FL=FL|FR=FR|FC=0.5*FL+0.5*FR|BL=FL|BR=FR|SL=FL|SR=FR"},
    {"Upmix to 7.1", surround, "ffmpeg pan to 7.1",
     "pan=7.1|FL=FL|FR=FR|FC=FC|LFE=LFE|BL=BL|BR=BR|SL=0.5*FL+0.5*BL|SR=0.5*FR+0.5*BR"},
    {"layout_converter", surround, "ffmpeg pan to stereo",
     "pan=stereo|FL=0.4*FL+0.2*FC+0.4*BL|FR=0.4*FR+0.2*FC+0.4*BR"},
    {"layout_converter", surround_7_1, "ffmpeg pan to 5.1",
     "pan=5.1|FL=0.667*FL+0.333*SL|FR=0.667*FR+0.333*SR|FC=0.667*FC|LFE=0.667*LFE|BL=0.667*BL+0.333*SL|"
     "BR=0.667*BR+0.333*SR"},
    {"Advanced Limiter", stereo_below_full_scale, "ffmpeg alimiter", alimiter},
    {"Advanced Limiter", stereo_above_full_scale, "ffmpeg alimiter", alimiter},
    {"Advanced Limiter", surround_below_full_scale, "ffmpeg alimiter", alimiter},
    {"Advanced Limiter", surround_above_full_scale, "ffmpeg alimiter", alimiter},
    {"Skip Silence", stereo, "ffmpeg silenceremove", silenceremove},
    {"Skip Silence", stereo_silent, "ffmpeg silenceremove", silenceremove},
};

void register_copy(const material& input) {
    benchmark::RegisterBenchmark(("copy/" + input.name).c_str(), [input](benchmark::State& state) {
        refilled_block block(input);
        for (auto _ : state) {
            benchmark::DoNotOptimize(block.fill().at(0).get_data());
            benchmark::ClobberMemory();
        }
        count_speed(state);
    })->UseRealTime();
}

void register_filter(const filter_peer& peer) {
    benchmark::RegisterBenchmark((peer.name + "/" + peer.input.name).c_str(), [peer](benchmark::State& state) {
        ffmpeg_filter filter(peer.chain, peer.input);
        const std::vector<double> samples = peer.input.samples();
        for (auto _ : state) {
            benchmark::DoNotOptimize(filter.run(samples));
        }
        count_speed(state);
    })->UseRealTime();
}

void register_literal_limiter(const material& input) {
    benchmark::RegisterBenchmark(("literal limiter/" + input.name).c_str(), [input](benchmark::State& state) {
        std::vector<testing_support::literal_limiter> channels(input.channels);
        refilled_block block(input);
        for (auto _ : state) {
            double* sample = block.fill().at(0).get_data();
            for (std::size_t frame = 0; frame < block_frames; ++frame) {
                for (testing_support::literal_limiter& channel : channels) {
                    *sample = channel.step(*sample);
                    ++sample;
                }
            }
            benchmark::ClobberMemory();
        }
        count_speed(state);
    })->UseRealTime();
}

/// Two tracks, each from an input of its own, and a linear fade of the length that the crossfader has by default.
void register_acrossfade() {
    benchmark::RegisterBenchmark("ffmpeg acrossfade/stereo, two tracks", [](benchmark::State& state) {
        const std::vector<double> samples = stereo.samples();
        for (auto _ : state) {
            ffmpeg_filter filter("[in0][in1]acrossfade=duration=2:curve1=tri:curve2=tri", stereo, 2);
            for (const std::size_t track : {std::size_t{0}, std::size_t{1}}) {
                for (std::size_t i = 0; i < track_blocks; ++i) {
                    benchmark::DoNotOptimize(filter.run(samples, track));
                }
                benchmark::DoNotOptimize(filter.finish(track));
            }
        }
        count_speed(state, 2 * track_blocks);
    })->UseRealTime();
}

void register_copy_of_album() {
    benchmark::RegisterBenchmark("copy/stereo, two tracks", [](benchmark::State& state) {
        refilled_block block(stereo);
        for (auto _ : state) {
            for (std::size_t i = 0; i < 2 * track_blocks; ++i) {
                benchmark::DoNotOptimize(block.fill().at(0).get_data());
                benchmark::ClobberMemory();
            }
        }
        count_speed(state, 2 * track_blocks);
    })->UseRealTime();
}

} // namespace

std::vector<comparison> register_peers() {
    std::vector<comparison> comparisons;
    for (const material& input : {mono, stereo, stereo_silent, stereo_to_48_khz, stereo_to_48_khz_at_best,
                                  stereo_to_32_khz, surround, surround_7_1, stereo_below_full_scale,
                                  stereo_above_full_scale, surround_below_full_scale, surround_above_full_scale}) {
        register_copy(input);
    }
    for (const filter_peer& peer : filter_peers) {
        register_filter(peer);
        comparisons.push_back({peer.effect, peer.name, peer.input.name});
    }
    for (const material& input : {stereo_below_full_scale, stereo_above_full_scale}) {
        register_literal_limiter(input);
        comparisons.push_back({"Advanced Limiter", "literal limiter", input.name});
    }
    register_copy_of_album();
    register_acrossfade();
    comparisons.push_back({"Crossfader", "ffmpeg acrossfade", "stereo, two tracks"});
    return comparisons;
}

} // namespace bench
