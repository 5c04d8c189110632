#include "bench/own_converters.h"

#include "effects/resampler_sinc/sinc_stream.h"
#include "effects/resampler_ssrc/ssrc_converter.h"

#include <cstring>
#include <stdexcept>

namespace bench {

namespace {

class sinc_core final : public converter {
public:
    sinc_core(const conversion& wanted, std::uint32_t quality)
        : channels_(wanted.channels),
          core_(kelvane::sinc_resampler::create(wanted.input_hz, wanted.output_hz, wanted.channels, quality)) {}

    void load(std::span<const double> interleaved) override {
        in_.assign(interleaved.begin(), interleaved.end());
        const std::size_t frames = in_.size() / channels_;
        out_.resize(core_->output_room(frames) * channels_);
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

class sinc_effect_stream final : public converter {
public:
    sinc_effect_stream(const conversion& wanted, std::uint32_t quality)
        : channels_(wanted.channels), stream_(wanted.input_hz, wanted.output_hz, wanted.channels, quality) {}

    void load(std::span<const double> interleaved) override { in_.assign(interleaved.begin(), interleaved.end()); }
    std::size_t run() override {
        out_.clear();
        stream_.push(in_, [this](std::span<const double> made) { out_.insert(out_.end(), made.begin(), made.end()); });
        return out_.size() / channels_;
    }
    std::vector<double> output() const override { return out_; }

private:
    std::size_t channels_;
    kelvane::sinc_stream stream_;
    std::vector<double> in_;
    std::vector<double> out_;
};

class fft_converter final : public converter {
public:
    explicit fft_converter(const conversion& wanted) : channels_(wanted.channels) {
        const auto channels = static_cast<std::uint16_t>(wanted.channels);
        const auto format = kelvane::ssrc::float64_format(wanted.input_hz, channels);
        if (!core_.set_up(format, wanted.output_hz, kelvane::ssrc::effect_quality)) {
            throw std::runtime_error("the FFT converter refuses");
        }
    }

    void load(std::span<const double> interleaved) override { in_.assign(interleaved.begin(), interleaved.end()); }
    std::size_t run() override {
        if (!core_.process(std::as_bytes(std::span(in_)), false)) {
            throw std::runtime_error("the FFT converter fails");
        }
        return core_.output().size() / sizeof(double) / channels_;
    }
    std::vector<double> output() const override {
        const std::span<const std::byte> bytes = core_.output();
        std::vector<double> samples(bytes.size() / sizeof(double));
        if (!samples.empty()) {
            std::memcpy(samples.data(), bytes.data(), bytes.size());
        }
        return samples;
    }

private:
    std::size_t channels_;
    kelvane::ssrc::ssrc_converter core_;
    std::vector<double> in_;
};

/// One kind for each level, made by `Converter` with the level's index.
template <class Converter>
std::vector<converter_kind> sinc_levels(const std::string& prefix) {
    std::vector<converter_kind> kinds;
    for (std::uint32_t quality = 0; quality < kelvane::sinc_qualities.size(); ++quality) {
        const auto make = [quality](const conversion& wanted) { return std::make_unique<Converter>(wanted, quality); };
        kinds.push_back({"kelvane", prefix + kelvane::sinc_qualities[quality].name, make});
    }
    return kinds;
}

} // namespace

std::vector<converter_kind> sinc_cores() {
    return sinc_levels<sinc_core>("");
}

std::vector<converter_kind> module_converters() {
    std::vector<converter_kind> kinds = sinc_levels<sinc_effect_stream>("sinc ");
    const auto make = [](const conversion& wanted) { return std::make_unique<fft_converter>(wanted); };
    kinds.push_back({"kelvane", "FFT", make});
    return kinds;
}

} // namespace bench
