// kelvane-bench: speed of the built module, as a ratio to a peer in the same run. Takes Google Benchmark's options, and
// has its repetitions and their interleaving set to what a noisy machine needs.
#include "bench/effects_bench.h"
#include "bench/peers_bench.h"
#include "bench/speed_table.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <vector>

int main(int count, char** arguments) {
    char repetitions[] = "--benchmark_repetitions=9";
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    char short_runs[] = "--benchmark_min_time=0.05";
    std::vector<char*> all(arguments, arguments + count);
    all.insert(all.begin() + 1, {repetitions, interleaved, short_runs});
    int all_count = static_cast<int>(all.size());
    benchmark::Initialize(&all_count, all.data());
    bench::register_effects(std::filesystem::read_symlink("/proc/self/exe").parent_path() / "kelvane.so");
    bench::speed_table table(bench::register_peers());
    benchmark::RunSpecifiedBenchmarks(&table);
    return 0;
}
