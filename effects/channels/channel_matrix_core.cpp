#include "effects/channels/channel_matrix_core.h"

#include <algorithm>

namespace kelvane {

namespace {

/// Frames that are mixed before the next pair of outputs takes its turn: what they read and write stays in the
/// first-level cache for up to eight channels on either side.
constexpr std::size_t chunk_frames = 128;

/// A list of terms whose length is not known beforehand.
constexpr std::size_t any_count = channel_matrix::max_channels + 1;

/// Whether no sample is infinite or not a number. Eight sums at a time, or each addition waits for the one before.
bool all_finite(std::span<const double> samples) noexcept {
    std::array<double, 8> sums{};
    const std::size_t whole = samples.size() / sums.size() * sums.size();
    for (std::size_t first = 0; first < whole; first += sums.size()) {
        for (std::size_t lane = 0; lane < sums.size(); ++lane) {
            sums[lane] += samples[first + lane] * 0.0;
        }
    }
    for (const double sample : samples.subspan(whole)) {
        sums[0] += sample * 0.0;
    }
    return std::all_of(sums.begin(), sums.end(), [](double sum) { return sum == 0.0; });
}

/// Frames of interleaved audio, seen from one of their channels.
template <class Sample>
struct frames_view {
    Sample* first;
    std::size_t channels;
};

/// Makes `Width` neighbouring outputs of every frame. The first `Count` terms are copied: a loop of known length keeps
/// them in registers.
template <std::size_t Width, std::size_t Count>
void mix_terms(std::span<const mixing_term> terms, frames_view<const double> in, frames_view<double> out,
               std::size_t frames) noexcept {
    std::array<mixing_term, Count % any_count> known{};
    std::copy_n(terms.begin(), known.size(), known.begin());
    const std::span<const mixing_term> used = Count == any_count ? terms : std::span<const mixing_term>(known);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        std::array<double, Width> sums{};
        for (const mixing_term& term : used) {
            for (std::size_t output = 0; output < Width; ++output) {
                sums[output] += in.first[term.input] * term.weights[output];
            }
        }
        std::copy_n(sums.begin(), Width, out.first);
        in.first += in.channels;
        out.first += out.channels;
    }
}

/// The common layouts have at most four inputs that two neighbouring outputs hear.
template <std::size_t Width>
void mix_outputs(std::span<const mixing_term> terms, frames_view<const double> in, frames_view<double> out,
                 std::size_t frames) noexcept {
    switch (terms.size()) {
    case 0:
        return mix_terms<Width, 0>(terms, in, out, frames);
    case 1:
        return mix_terms<Width, 1>(terms, in, out, frames);
    case 2:
        return mix_terms<Width, 2>(terms, in, out, frames);
    case 3:
        return mix_terms<Width, 3>(terms, in, out, frames);
    case 4:
        return mix_terms<Width, 4>(terms, in, out, frames);
    default:
        return mix_terms<Width, any_count>(terms, in, out, frames);
    }
}

} // namespace

channel_mixer::channel_mixer(const channel_matrix& matrix) noexcept : matrix_(matrix) {
    for (std::size_t output = 0; output < outputs(); output += 2) {
        pairs_[output / 2] = make_pair(output);
    }
}

channel_mixer::output_pair channel_mixer::make_pair(std::size_t output) const noexcept {
    const bool has_partner = output + 1 < outputs();
    output_pair pair;
    for (std::size_t input = 0; input < inputs(); ++input) {
        const double weight = matrix_.weight(output, input);
        const double weight_of_partner = has_partner ? matrix_.weight(output + 1, input) : 0.0;
        if (weight != 0.0 || weight_of_partner != 0.0) {
            pair.terms[pair.term_count++] = {input, {weight, weight_of_partner}};
        }
    }
    return pair;
}

void channel_mixer::mix(std::span<const double> in, std::span<double> out) const noexcept {
    const std::size_t frames = outputs() == 0 ? 0 : out.size() / outputs();
    for (std::size_t done = 0; done < frames; done += chunk_frames) {
        const std::size_t next = std::min(chunk_frames, frames - done);
        mix_chunk(in.data() + done * inputs(), out.data() + done * outputs(), next);
    }
}

void channel_mixer::mix_chunk(const double* in, double* out, std::size_t frames) const noexcept {
    if (!all_finite({in, frames * inputs()})) {
        mix_in_full(in, out, frames);
        return;
    }
    for (std::size_t output = 0; output < outputs(); output += 2) {
        const output_pair& pair = pairs_[output / 2];
        const std::span terms(pair.terms.data(), pair.term_count);
        const bool has_partner = output + 1 < outputs();
        const auto mix_next = has_partner ? mix_outputs<2> : mix_outputs<1>;
        mix_next(terms, {in, inputs()}, {out + output, outputs()}, frames);
    }
}

void channel_mixer::mix_in_full(const double* in, double* out, std::size_t frames) const noexcept {
    for (std::size_t frame = 0; frame < frames; ++frame) {
        for (std::size_t output = 0; output < outputs(); ++output) {
            double sum = 0.0;
            for (std::size_t input = 0; input < inputs(); ++input) {
                sum += in[input] * matrix_.weight(output, input);
            }
            out[output] = sum;
        }
        in += inputs();
        out += outputs();
    }
}

} // namespace kelvane
