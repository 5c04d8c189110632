#include "effects/channels/channel_matrix_core.h"

#include "effects/double_pair_core.h"

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

/// Interleaved frames.
template <class Sample>
struct frame_row {
    Sample* first;
    std::size_t channels;

    void advance(std::size_t frames) noexcept { first += frames * channels; }
};

/// How a term finds its two samples in a frame.
struct anywhere {
    static double_pair load(const double* frame, const mixing_term& term) noexcept {
        return load_apart(frame + term.inputs[0], frame + term.inputs[1]);
    }
};

/// For terms whose second input is the channel behind the first.
struct side_by_side {
    static double_pair load(const double* frame, const mixing_term& term) noexcept {
        return load_two(frame + term.inputs[0]);
    }
};

bool are_side_by_side(std::span<const mixing_term> terms) noexcept {
    return std::all_of(terms.begin(), terms.end(),
                       [](const mixing_term& term) { return term.inputs[1] == term.inputs[0] + 1; });
}

template <std::size_t Outputs, class Inputs>
void mix_frame(std::span<const mixing_term> terms, const double* in, double* out) noexcept {
    double_pair sums{};
    for (const mixing_term& term : terms) {
        sums = sums + Inputs::load(in, term) * load_two(term.weights.data());
    }
    if constexpr (Outputs == 2) {
        store_two(out, sums);
    } else {
        store_first(out, sums);
    }
}

/// Makes `Outputs` (one or two) neighbouring outputs of every frame. With a known count of terms the loop over them
/// unrolls, and their weights stay in registers; four frames at a time share the counting.
template <std::size_t Outputs, class Inputs, std::size_t Count>
void mix_terms(std::span<const mixing_term> terms, frame_row<const double> in, frame_row<double> out,
               std::size_t frames) noexcept {
    std::array<mixing_term, Count % any_count> known{};
    std::copy_n(terms.begin(), known.size(), known.begin());
    const std::span<const mixing_term> used = Count == any_count ? terms : std::span<const mixing_term>(known);
    for (; frames >= 4; frames -= 4) {
        mix_frame<Outputs, Inputs>(used, in.first, out.first);
        mix_frame<Outputs, Inputs>(used, in.first + in.channels, out.first + out.channels);
        mix_frame<Outputs, Inputs>(used, in.first + 2 * in.channels, out.first + 2 * out.channels);
        mix_frame<Outputs, Inputs>(used, in.first + 3 * in.channels, out.first + 3 * out.channels);
        in.advance(4);
        out.advance(4);
    }
    for (; frames > 0; --frames) {
        mix_frame<Outputs, Inputs>(used, in.first, out.first);
        in.advance(1);
        out.advance(1);
    }
}

/// In the common layouts an output hears at most four inputs.
template <std::size_t Outputs, class Inputs>
void mix_outputs(std::span<const mixing_term> terms, frame_row<const double> in, frame_row<double> out,
                 std::size_t frames) noexcept {
    switch (terms.size()) {
    case 0:
        return mix_terms<Outputs, Inputs, 0>(terms, in, out, frames);
    case 1:
        return mix_terms<Outputs, Inputs, 1>(terms, in, out, frames);
    case 2:
        return mix_terms<Outputs, Inputs, 2>(terms, in, out, frames);
    case 3:
        return mix_terms<Outputs, Inputs, 3>(terms, in, out, frames);
    case 4:
        return mix_terms<Outputs, Inputs, 4>(terms, in, out, frames);
    default:
        return mix_terms<Outputs, Inputs, any_count>(terms, in, out, frames);
    }
}

} // namespace

channel_mixer::channel_mixer(const channel_matrix& matrix) noexcept : matrix_(matrix) {
    for (std::size_t output = 0; output < outputs(); ++output) {
        add_terms(pairs_[output / 2], output % 2, output);
    }
}

void channel_mixer::add_terms(output_pair& pair, std::size_t lane, std::size_t output) const noexcept {
    std::size_t count = 0;
    for (std::size_t input = 0; input < inputs(); ++input) {
        if (matrix_.weight(output, input) != 0.0) {
            mixing_term& term = pair.terms[count++];
            term.inputs[lane] = input;
            term.weights[lane] = matrix_.weight(output, input);
        }
    }
    pair.term_count = std::max(pair.term_count, count);
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
        const bool is_alone = output + 1 == outputs();
        const auto mix_pair = are_side_by_side(terms) ? mix_outputs<2, side_by_side> : mix_outputs<2, anywhere>;
        const auto mix_next = is_alone ? mix_outputs<1, anywhere> : mix_pair;
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
