#include "bench/measure/converters.h"

#include <algorithm>

namespace bench {

namespace {

constexpr std::size_t block_frames = 4096;

} // namespace

std::vector<double> convert_all(converter& used, std::span<const double> interleaved, std::size_t channels) {
    std::vector<double> all;
    while (!interleaved.empty()) {
        const std::size_t samples = std::min(interleaved.size(), block_frames * channels);
        used.load(interleaved.first(samples));
        used.run();
        const std::vector<double> out = used.output();
        all.insert(all.end(), out.begin(), out.end());
        interleaved = interleaved.subspan(samples);
    }
    return all;
}

} // namespace bench
