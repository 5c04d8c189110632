#include "bench/peer_converters.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}
#include <fmt/format.h>
#include <samplerate.h>
#include <soxr.h>
#include <speex/speex_resampler.h>
#include <zita-resampler/resampler.h>

#include <array>
#include <stdexcept>

namespace bench {

namespace {

void require(bool is_well, const char* library) {
    if (!is_well) {
        throw std::runtime_error(fmt::format("{} refuses", library));
    }
}

/// Input and output in the peer's own samples.
template <class Sample>
class peer : public converter {
public:
    explicit peer(const conversion& wanted) : wanted_(wanted) {}

    void load(std::span<const double> interleaved) final {
        in_.resize(interleaved.size());
        std::transform(interleaved.begin(), interleaved.end(), in_.begin(),
                       [](double sample) { return static_cast<Sample>(sample); });
        constexpr std::size_t spare_frames = 10'000;
        const double frames = static_cast<double>(in_frames()) * wanted_.ratio();
        out_.resize((static_cast<std::size_t>(frames) + spare_frames) * wanted_.channels);
    }
    std::size_t run() final { return frames_ = convert(); }
    std::vector<double> output() const final {
        return {out_.begin(), out_.begin() + static_cast<std::ptrdiff_t>(frames_ * wanted_.channels)};
    }

protected:
    virtual std::size_t convert() = 0;

    const conversion& wanted() const { return wanted_; }
    std::vector<Sample>& in() { return in_; }
    std::vector<Sample>& out() { return out_; }
    std::size_t in_frames() const { return in_.size() / wanted_.channels; }
    std::size_t out_room() const { return out_.size() / wanted_.channels; }

private:
    conversion wanted_;
    std::vector<Sample> in_;
    std::vector<Sample> out_;
    std::size_t frames_ = 0;
};

/// In double precision. Options as the library's users write them: "filter_size=64:cutoff=0.98".
class swresample_peer final : public peer<double> {
public:
    swresample_peer(const conversion& wanted, const std::string& options) : peer(wanted), context_(swr_alloc()) {
        AVChannelLayout layout{};
        av_channel_layout_default(&layout, static_cast<int>(wanted.channels));
        SwrContext* context = context_.get();
        require(swr_alloc_set_opts2(&context, &layout, AV_SAMPLE_FMT_DBL, static_cast<int>(wanted.output_hz), &layout,
                                    AV_SAMPLE_FMT_DBL, static_cast<int>(wanted.input_hz), 0, nullptr) >= 0,
                name);
        av_opt_set_sample_fmt(context, "internal_sample_fmt", AV_SAMPLE_FMT_DBLP, 0);
        require(av_set_options_string(context, options.c_str(), "=", ":") >= 0, name);
        require(swr_init(context) >= 0, name);
    }

private:
    static constexpr const char* name = "libswresample";
    struct freeing {
        void operator()(SwrContext* context) const { swr_free(&context); }
    };

    std::size_t convert() override {
        auto* to = reinterpret_cast<std::uint8_t*>(out().data());
        const auto* from = reinterpret_cast<const std::uint8_t*>(in().data());
        const int made =
            swr_convert(context_.get(), &to, static_cast<int>(out_room()), &from, static_cast<int>(in_frames()));
        require(made >= 0, name);
        return static_cast<std::size_t>(made);
    }

    std::unique_ptr<SwrContext, freeing> context_;
};

class zita_peer final : public peer<float> {
public:
    zita_peer(const conversion& wanted, unsigned half_length) : peer(wanted) {
        require(resampler_.setup(wanted.input_hz, wanted.output_hz, wanted.channels, half_length) == 0,
                "zita-resampler");
    }

private:
    std::size_t convert() override {
        resampler_.inp_count = static_cast<unsigned>(in_frames());
        resampler_.inp_data = in().data();
        resampler_.out_count = static_cast<unsigned>(out_room());
        resampler_.out_data = out().data();
        resampler_.process();
        return out_room() - resampler_.out_count;
    }

    Resampler resampler_;
};

class speex_peer final : public peer<float> {
public:
    speex_peer(const conversion& wanted, int quality)
        : peer(wanted),
          state_(speex_resampler_init(wanted.channels, wanted.input_hz, wanted.output_hz, quality, nullptr)) {
        require(state_ != nullptr, "speexdsp");
    }

private:
    struct freeing {
        void operator()(SpeexResamplerState* state) const { speex_resampler_destroy(state); }
    };

    std::size_t convert() override {
        auto taken = static_cast<spx_uint32_t>(in_frames());
        auto made = static_cast<spx_uint32_t>(out_room());
        speex_resampler_process_interleaved_float(state_.get(), in().data(), &taken, out().data(), &made);
        return made;
    }

    std::unique_ptr<SpeexResamplerState, freeing> state_;
};

class samplerate_peer final : public peer<float> {
public:
    samplerate_peer(const conversion& wanted, int kind)
        : peer(wanted), state_(src_new(kind, static_cast<int>(wanted.channels), nullptr)) {
        require(state_ != nullptr, "libsamplerate");
    }

private:
    struct freeing {
        void operator()(SRC_STATE* state) const { src_delete(state); }
    };

    std::size_t convert() override {
        SRC_DATA data{};
        data.data_in = in().data();
        data.data_out = out().data();
        data.input_frames = static_cast<long>(in_frames());
        data.output_frames = static_cast<long>(out_room());
        data.src_ratio = wanted().ratio();
        require(src_process(state_.get(), &data) == 0, "libsamplerate");
        return static_cast<std::size_t>(data.output_frames_gen);
    }

    std::unique_ptr<SRC_STATE, freeing> state_;
};

template <class Sample>
class soxr_peer final : public peer<Sample> {
public:
    soxr_peer(const conversion& wanted, unsigned long recipe) : peer<Sample>(wanted) {
        const soxr_datatype_t form = sizeof(Sample) == sizeof(double) ? SOXR_FLOAT64_I : SOXR_FLOAT32_I;
        const soxr_io_spec_t io = soxr_io_spec(form, form);
        const soxr_quality_spec_t quality = soxr_quality_spec(recipe, 0);
        const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
        state_.reset(soxr_create(wanted.input_hz, wanted.output_hz, wanted.channels, nullptr, &io, &quality, &runtime));
        require(state_ != nullptr, "libsoxr");
    }

private:
    struct freeing {
        void operator()(soxr* state) const { soxr_delete(state); }
    };

    std::size_t convert() override {
        std::size_t made = 0;
        const soxr_error_t error = soxr_process(state_.get(), this->in().data(), this->in_frames(), nullptr,
                                                this->out().data(), this->out_room(), &made);
        require(error == nullptr, "libsoxr");
        return made;
    }

    std::unique_ptr<soxr, freeing> state_;
};

/// A kind whose maker gets the numbers behind the conversion.
template <class Peer, class... Numbers>
converter_kind kind(std::string family, std::string setting, Numbers... numbers) {
    return {std::move(family), std::move(setting),
            [=](const conversion& wanted) { return std::make_unique<Peer>(wanted, numbers...); }};
}

std::vector<converter_kind> samplerate_kinds() {
    return {kind<samplerate_peer>("libsamplerate", "linear", static_cast<int>(SRC_LINEAR)),
            kind<samplerate_peer>("libsamplerate", "fastest", static_cast<int>(SRC_SINC_FASTEST)),
            kind<samplerate_peer>("libsamplerate", "medium", static_cast<int>(SRC_SINC_MEDIUM_QUALITY)),
            kind<samplerate_peer>("libsamplerate", "best", static_cast<int>(SRC_SINC_BEST_QUALITY))};
}

template <class Sample>
converter_kind soxr_kind(const char* setting, unsigned long recipe) {
    return kind<soxr_peer<Sample>>("libsoxr", setting, recipe);
}

void append(std::vector<converter_kind>& kinds, const std::vector<converter_kind>& more) {
    kinds.insert(kinds.end(), more.begin(), more.end());
}

} // namespace

std::vector<converter_kind> speed_peers() {
    std::vector<converter_kind> kinds;
    for (const auto& [taps, beta] : {std::pair(4, 4), {8, 6}, {16, 6}, {64, 11}, {256, 15}}) {
        kinds.push_back(kind<swresample_peer>("libswresample", fmt::format("{} taps", taps),
                                              fmt::format("filter_size={}:kaiser_beta={}", taps, beta)));
    }
    for (const unsigned half_length : {8U, 16U, 32U, 48U, 64U, 96U}) {
        kinds.push_back(kind<zita_peer>("zita-resampler", fmt::format("{}", half_length), half_length));
    }
    for (const int quality : {0, 1, 2, 3, 4, 5, 7, 10}) {
        kinds.push_back(kind<speex_peer>("speexdsp", fmt::format("{}", quality), quality));
    }
    append(kinds, samplerate_kinds());
    append(kinds, {soxr_kind<float>("QQ", SOXR_QQ), soxr_kind<float>("LQ", SOXR_LQ), soxr_kind<float>("MQ", SOXR_MQ),
                   soxr_kind<double>("HQ", SOXR_HQ), soxr_kind<double>("VHQ", SOXR_VHQ)});
    return kinds;
}

std::vector<converter_kind> quality_peers() {
    const std::string long_filter = "filter_size=256:cutoff=0.98";
    std::vector<converter_kind> kinds{soxr_kind<double>("HQ", SOXR_HQ), soxr_kind<double>("VHQ", SOXR_VHQ),
                                      soxr_kind<double>("VHQ steep", SOXR_VHQ | SOXR_STEEP_FILTER)};
    append(kinds, samplerate_kinds());
    append(kinds, {kind<swresample_peer>("libswresample", "default", std::string()),
                   kind<swresample_peer>("libswresample", long_filter, long_filter)});
    return kinds;
}

} // namespace bench
