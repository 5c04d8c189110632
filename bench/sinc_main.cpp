// kelvane-sinc-bench: speed of the windowed-sinc converter, level by level, beside other converters in the same
// run. Takes Google Benchmark's options.
#include "bench/bench_blocks.h"
#include "bench/converter_table.h"
#include "bench/measure/quality.h"
#include "bench/own_converters.h"
#include "bench/peer_converters.h"

#include <array>
#include <vector>

namespace bench {

namespace {

constexpr double low_tone_hz = 997.0;
constexpr double high_tone_hz = 15000.0;

const std::array<material, 3> materials{mono, stereo, surround};

void register_speed(const converter_kind& kind, const conversion& rates, const material& input) {
    const auto run = [kind, rates, input](benchmark::State& state) {
        const auto used = kind.make({rates.input_hz, rates.output_hz, input.channels});
        used->load(input.samples());
        for (auto _ : state) {
            benchmark::DoNotOptimize(used->run());
        }
        const double seconds = static_cast<double>(state.iterations()) * block_frames / rates.input_hz;
        state.counters["x_real_time"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
    };
    benchmark::RegisterBenchmark(converter_table::benchmark_name(kind, rates, input.name).c_str(), run)->UseRealTime();
}

void register_all(converter_table& table) {
    std::vector<converter_kind> kinds = sinc_cores();
    const std::vector<converter_kind> peers = speed_peers();
    kinds.insert(kinds.end(), peers.begin(), peers.end());
    for (const conversion& rates : {conversion{44100, 48000, 1}, {48000, 44100, 1}}) {
        for (const converter_kind& kind : kinds) {
            const tone_path path = path_through(kind);
            table.add_row(kind, rates, signal_to_noise_db(path, rates, low_tone_hz),
                          signal_to_noise_db(path, rates, high_tone_hz));
            for (const material& input : materials) {
                register_speed(kind, rates, input);
            }
        }
    }
}

} // namespace

} // namespace bench

int main(int count, char** arguments) {
    char repetitions[] = "--benchmark_repetitions=9";
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    char short_runs[] = "--benchmark_min_time=0.02";
    std::vector<char*> all(arguments, arguments + count);
    all.insert(all.begin() + 1, {repetitions, interleaved, short_runs});
    int all_count = static_cast<int>(all.size());
    benchmark::Initialize(&all_count, all.data());
    bench::converter_table table;
    bench::register_all(table);
    benchmark::RunSpecifiedBenchmarks(&table);
    return 0;
}
