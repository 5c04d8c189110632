#include "bench/converters.h"

#include "bench/bench_blocks.h"
#include "effects/resampler_sinc/sinc_resampler_core.h"

#include <algorithm>

namespace bench {

namespace {

class own_converter final : public converter {
public:
    own_converter(const conversion& wanted, std::uint32_t quality)
        : channels_(wanted.channels),
          core_(kelvane::sinc_resampler::create(wanted.input_hz, wanted.output_hz, wanted.channels, quality)) {}

    void load(std::span<const double> interleaved) override {
        in_.assign(interleaved.begin(), interleaved.end());
        const std::size_t frames = in_.size() / channels_;
        out_.resize(static_cast<std::size_t>(2.0 * core_->ratio() * static_cast<double>(frames) + 1.0) * channels_);
    }
    std::size_t run() override { return frames_ = core_->process(in_, out_); }
    std::vector<double> output() const override {
        return {out_.begin(), out_.begin() + static_cast<std::ptrdiff_t>(frames_ * channels_)};
    }

private:
    std::size_t channels_;
    std::unique_ptr<kelvane::sinc_resampler> core_;
    std::vector<double> in_;
    std::vector<double> out_;
    std::size_t frames_ = 0;
};

} // namespace

std::vector<converter_kind> own_converters() {
    std::vector<converter_kind> kinds;
    for (std::uint32_t quality = 0; quality < kelvane::sinc_qualities.size(); ++quality) {
        kinds.push_back({"kelvane", kelvane::sinc_qualities[quality].name, [quality](const conversion& wanted) {
                             return std::make_unique<own_converter>(wanted, quality);
                         }});
    }
    return kinds;
}

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
