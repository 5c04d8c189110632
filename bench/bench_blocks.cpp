#include "bench/bench_blocks.h"

#include <algorithm>
#include <random>

namespace bench {

std::vector<double> material::samples() const {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> uniform(-peak, peak);
    std::vector<double> made(block_frames * channels);
    std::generate(made.begin(), made.end(), [&] { return uniform(random); });
    return made;
}

refilled_block::refilled_block(const material& source) : material_(source), samples_(source.samples()) {}

host::block_list& refilled_block::fill() {
    while (list_.get_count() > 1) { // an effect emitted blocks of its own
        list_.remove_item(list_.get_count() - 1);
    }
    if (list_.get_count() == 0) {
        list_.append(host::block(samples_, rate_hz, material_.channels, material_.channel_mask));
    }
    host::block& block = list_.at(0);
    block.set_data_size(samples_.size());
    std::copy(samples_.begin(), samples_.end(), block.get_data());
    block.set_sample_rate(rate_hz);
    block.set_channels(material_.channels, material_.channel_mask);
    block.set_sample_count(block_frames);
    return list_;
}

void count_speed(benchmark::State& state, std::size_t blocks) {
    const std::size_t frames = static_cast<std::size_t>(state.iterations()) * blocks * block_frames;
    const double seconds = static_cast<double>(frames) / rate_hz;
    state.counters["x_real_time"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
}

} // namespace bench
