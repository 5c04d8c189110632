#include "effects/resampler_ssrc/ssrc_converter.h"

#include "effects/resampler_ssrc/rate_plan.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace kelvane::ssrc {

namespace {

/// More than it was promised, of a stream that goes on: a path rounds its delay down to whole frames, and its first
/// frame needs next to no input.
constexpr std::uint64_t most_frames_ahead = 2;

bool is_usable(const converter_quality& quality) noexcept {
    return quality.down_filter_taps > 0 && quality.up_filter_taps > 0 && quality.transition_band_hz > 0;
}

/// Calls the function with the path that there is, if there is one.
template <class Variant, class Function>
void with_path(Variant& path, Function&& function) {
    if (auto* up = std::get_if<up_path>(&path)) {
        function(*up);
    } else if (auto* down = std::get_if<down_path>(&path)) {
        function(*down);
    }
}

} // namespace

bool ssrc_converter::is_conversion_supported(std::uint32_t input_hz, std::uint32_t output_hz) noexcept {
    return input_hz > 0 && output_hz > 0 && (input_hz == output_hz || plan_rates(input_hz, output_hz).has_value());
}

bool ssrc_converter::set_up(const wave_format& input, std::uint32_t output_hz, const converter_quality& quality,
                            const vector_kernels& kernels) {
    destroy();
    const auto code = sample_code_of(input);
    if (!code || input.channels == 0 || !is_usable(quality) || !is_conversion_supported(input.rate_hz, output_hz)) {
        return false;
    }
    if (const auto plan = plan_rates(input.rate_hz, output_hz); plan && input.rate_hz != output_hz) {
        if (plan->goes_up()) {
            path_.emplace<up_path>(*plan, quality, input.channels, kernels);
        } else {
            path_.emplace<down_path>(*plan, quality, input.channels, kernels);
        }
    }
    input_hz_ = input.rate_hz;
    output_hz_ = output_hz;
    channels_ = input.channels;
    code_ = *code;
    frame_bytes_ = channels_ * bytes_per_sample(code_);
    begin_stream();
    return true;
}

void ssrc_converter::destroy() noexcept {
    *this = ssrc_converter();
}

void ssrc_converter::begin_stream() noexcept {
    frames_in_ = 0;
    frames_made_ = 0;
    frames_out_ = 0;
    with_path(path_, [this](auto& path) { frames_to_discard_ = path.frames_to_discard(); });
}

bool ssrc_converter::process(std::span<const std::byte> input, bool is_last) {
    take_back_output();
    if (channels_ == 0 || input.size() % frame_bytes_ != 0) {
        return false;
    }
    const std::size_t count = input.size() / frame_bytes_;
    if (input_hz_ == output_hz_) {
        return copy(input, count);
    }
    if (!make_room(count)) {
        return false;
    }
    frames_in_ += count;
    with_path(path_, [&](auto& path) {
        convert(path, input.data(), count);
        if (is_last) {
            flush(path);
        }
    });
    hand_out();
    if (is_last) {
        with_path(path_, [](auto& path) { path.reset(); });
        begin_stream();
    }
    return true;
}

bool ssrc_converter::copy(std::span<const std::byte> input, std::size_t frames) noexcept {
    if (output_.size() < input.size() && !allocate_output(frames)) {
        return false;
    }
    std::copy(input.begin(), input.end(), output_.begin());
    output_bytes_ = input.size();
    return true;
}

/// Of the frames made, as many as the input so far is worth; the others wait for more of it.
void ssrc_converter::hand_out() noexcept {
    const std::uint64_t frames = std::min(frames_made_, promised_frames(frames_in_));
    output_bytes_ = static_cast<std::size_t>(frames - frames_out_) * frame_bytes_;
    frames_out_ = frames;
}

/// What was handed out is gone; the frames held back behind it move to the front.
void ssrc_converter::take_back_output() noexcept {
    if (output_bytes_ > 0) {
        std::byte* held = output_.data() + output_bytes_;
        std::copy(held, held + held_bytes(), output_.data());
        output_bytes_ = 0;
    }
}

std::uint64_t ssrc_converter::promised_frames(std::uint64_t input_frames) const noexcept {
    return input_frames / input_hz_ * output_hz_ + input_frames % input_hz_ * output_hz_ / input_hz_;
}

/// Room for all output up to the call's end and for a block beyond, so that none is ever cut off. What the path holds
/// back varies by a block from call to call: one more is room for every later call as well.
bool ssrc_converter::make_room(std::uint64_t frames) noexcept {
    std::uint64_t most_frames = promised_frames(frames_in_ + frames) - frames_out_ + most_frames_ahead;
    std::uint64_t spare_frames = 0;
    with_path(path_, [&](const auto& path) {
        most_frames += path.most_block_frames();
        spare_frames = path.most_block_frames();
    });
    return output_.size() / frame_bytes_ >= most_frames || allocate_output(most_frames + spare_frames);
}

/// Keeps the frames held back.
bool ssrc_converter::allocate_output(std::uint64_t frames) noexcept {
    if (frames > std::numeric_limits<std::size_t>::max() / frame_bytes_) {
        return false;
    }
    try {
        aligned_array<std::byte> larger(static_cast<std::size_t>(frames) * frame_bytes_);
        std::copy_n(output_.begin(), held_bytes(), larger.begin());
        output_ = std::move(larger);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

template <class Path>
void ssrc_converter::convert(Path& path, const std::byte* frames, std::size_t count) {
    const std::size_t sample_bytes = bytes_per_sample(code_);
    while (count > 0) {
        const std::size_t taken = std::min(count, path.frames_wanted());
        for (std::size_t channel = 0; channel < channels_; ++channel) {
            decode(code_, frames + channel * sample_bytes, frame_bytes_, path.next_frames(channel), taken);
        }
        path.take(taken);
        frames += taken * frame_bytes_;
        count -= taken;
        if (path.frames_wanted() == 0) {
            run_block(path);
        }
    }
}

/// Silence behind the stream brings out what the filters hold.
template <class Path>
void ssrc_converter::flush(Path& path) {
    const std::uint64_t promised = promised_frames(frames_in_);
    while (frames_made_ < promised) {
        const std::size_t wanted = path.frames_wanted();
        for (std::size_t channel = 0; channel < channels_; ++channel) {
            std::fill_n(path.next_frames(channel), wanted, 0.0);
        }
        path.take(wanted);
        run_block(path);
    }
}

template <class Path>
void ssrc_converter::run_block(Path& path) {
    std::size_t block_frames = 0;
    for (std::size_t first = 0; first < channels_; first += Path::channels_together) {
        const std::size_t last = std::min(first + Path::channels_together, channels_);
        path.run(first, last - first);
        for (std::size_t channel = first; channel < last; ++channel) {
            const std::span<const double> block = path.output(channel);
            emit(block, channel);
            block_frames = block.size();
        }
    }
    path.next_block();
    const std::size_t discarded = std::min(frames_to_discard_, block_frames);
    frames_to_discard_ -= discarded;
    frames_made_ += block_frames - discarded;
}

/// Writes a channel of a block behind what was made before, without what is discarded.
void ssrc_converter::emit(std::span<const double> block, std::size_t channel) noexcept {
    const std::size_t discarded = std::min(frames_to_discard_, block.size());
    std::byte* first = output_.data() + held_bytes() + channel * bytes_per_sample(code_);
    encode(code_, block.data() + discarded, first, frame_bytes_, block.size() - discarded);
}

} // namespace kelvane::ssrc
