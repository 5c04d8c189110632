#include "effects/channels/layout_core.h"

#include "effects/channels/speakers_core.h"
#include "velmora/channel_mask.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>

namespace kelvane {

namespace {

using namespace velmora::speaker;

constexpr std::uint32_t back_pair = back_left | back_right;
constexpr std::uint32_t side_pair = side_left | side_right;
constexpr std::uint32_t front_pair = front_left | front_right;
constexpr std::uint32_t inner_pair = front_left_of_centre | front_right_of_centre;

/// Adds an input speaker's sound to an output speaker; nothing happens when either is not there.
struct feed {
    std::uint32_t input;
    std::uint32_t output;
    double weight;
};

constexpr std::array sides_to_back{feed{side_left, back_left, 1.0}, feed{side_right, back_right, 1.0}};
constexpr std::array back_to_sides{feed{back_left, side_left, 1.0}, feed{back_right, side_right, 1.0}};
constexpr std::array back_to_front{feed{back_left, front_left, 1.0}, feed{back_right, front_right, 1.0}};
constexpr std::array sides_to_front{feed{side_left, front_left, 1.0}, feed{side_right, front_right, 1.0}};
constexpr std::array sides_to_back_and_front{feed{side_left, back_left, 0.5}, feed{side_left, front_left, 0.5},
                                             feed{side_right, back_right, 0.5}, feed{side_right, front_right, 0.5}};
constexpr std::array centre_to_front{feed{front_centre, front_left, 0.5}, feed{front_centre, front_right, 0.5}};
constexpr std::array back_centre_to_back{feed{back_centre, back_left, 0.5}, feed{back_centre, back_right, 0.5}};
constexpr std::array inner_to_front_and_centre{
    feed{front_left_of_centre, front_centre, 0.5}, feed{front_left_of_centre, front_left, 0.5},
    feed{front_right_of_centre, front_centre, 0.5}, feed{front_right_of_centre, front_right, 0.5}};
constexpr std::array inner_to_centre{feed{front_left_of_centre, front_centre, 1.0},
                                     feed{front_right_of_centre, front_centre, 1.0}};
constexpr std::array inner_to_front{feed{front_left_of_centre, front_left, 1.0},
                                    feed{front_right_of_centre, front_right, 1.0}};

/// Where input speakers without a place of their own go. Conditions that are 0 ask for nothing.
struct folding {
    std::uint32_t unplaced;         ///< it is for these, when at least one of them is still without a place
    std::uint32_t empty_places = 0; ///< one of these is in the target and not in the input
    std::uint32_t all_places = 0;   ///< these are all in the target
    std::uint32_t any_place = 0;    ///< one of these is in the target
    std::span<const feed> feeds;
};

/// In the order in which they are tried; whom one of them has placed, the later ones leave alone.
constexpr std::array foldings{
    folding{.unplaced = side_pair, .empty_places = back_pair, .feeds = sides_to_back},
    folding{.unplaced = back_pair, .empty_places = side_pair, .feeds = back_to_sides},
    folding{.unplaced = front_centre, .feeds = centre_to_front},
    folding{.unplaced = back_centre, .any_place = back_pair, .feeds = back_centre_to_back},
    folding{.unplaced = back_pair, .any_place = side_pair, .feeds = back_to_sides},
    folding{.unplaced = back_pair, .feeds = back_to_front},
    folding{.unplaced = side_pair, .any_place = back_pair, .feeds = sides_to_back_and_front},
    folding{.unplaced = side_pair, .feeds = sides_to_front},
    folding{.unplaced = inner_pair, .all_places = front_pair | front_centre, .feeds = inner_to_front_and_centre},
    folding{.unplaced = inner_pair, .any_place = front_centre, .feeds = inner_to_centre},
    folding{.unplaced = inner_pair, .any_place = front_pair, .feeds = inner_to_front},
};

bool holds(const folding& rule, std::uint32_t input_mask, std::uint32_t target_mask) {
    const std::uint32_t empty = target_mask & ~input_mask;
    return (rule.empty_places == 0 || has_any(empty, rule.empty_places)) && has_all(target_mask, rule.all_places) &&
           (rule.any_place == 0 || has_any(target_mask, rule.any_place));
}

/// A matrix whose weights are found by speakers.
class speaker_matrix {
public:
    speaker_matrix(std::uint32_t input_mask, std::size_t inputs, std::uint32_t target_mask)
        : input_mask_(input_mask), target_mask_(target_mask),
          weights_(static_cast<std::size_t>(std::popcount(target_mask)), inputs) {}

    void add(const feed& added) {
        if (has_any(input_mask_, added.input) && has_any(target_mask_, added.output)) {
            weights_.weight(channel_of(target_mask_, added.output), channel_of(input_mask_, added.input)) +=
                added.weight;
        }
    }

    const channel_matrix& weights() const { return weights_; }

private:
    std::uint32_t input_mask_;
    std::uint32_t target_mask_;
    channel_matrix weights_;
};

channel_matrix fold(std::uint32_t input_mask, std::size_t inputs, std::uint32_t target_mask) {
    speaker_matrix matrix(input_mask, inputs, target_mask);
    for (std::size_t input = 0; input < inputs; ++input) {
        const std::uint32_t speaker = speaker_at(input_mask, input);
        matrix.add({speaker, speaker, 1.0});
    }
    std::uint32_t unplaced = input_mask & ~target_mask;
    for (const folding& rule : foldings) {
        if (has_any(unplaced, rule.unplaced) && holds(rule, input_mask, target_mask)) {
            std::for_each(rule.feeds.begin(), rule.feeds.end(), [&](const feed& added) { matrix.add(added); });
            unplaced &= ~rule.unplaced;
        }
    }
    return matrix.weights();
}

channel_matrix sum_of_all(std::size_t inputs) {
    channel_matrix matrix(1, inputs);
    for (std::size_t input = 0; input < inputs; ++input) {
        matrix.weight(0, input) = 1.0;
    }
    return matrix;
}

double sum_of_weights(const channel_matrix& matrix, std::size_t output) {
    double sum = 0.0;
    for (std::size_t input = 0; input < matrix.inputs(); ++input) {
        sum += matrix.weight(output, input);
    }
    return sum;
}

/// No output can then be louder than the loudest input.
void normalise(channel_matrix& matrix) {
    double largest = 1.0;
    for (std::size_t output = 0; output < matrix.outputs(); ++output) {
        largest = std::max(largest, sum_of_weights(matrix, output));
    }
    const double scale = 1.0 / largest;
    for (std::size_t output = 0; output < matrix.outputs(); ++output) {
        for (std::size_t input = 0; input < matrix.inputs(); ++input) {
            matrix.weight(output, input) *= scale;
        }
    }
}

} // namespace

channel_matrix make_layout_matrix(std::uint32_t input_mask, std::size_t inputs, std::uint32_t target_mask) {
    const bool is_mono = target_mask == velmora::layout::mono;
    channel_matrix matrix = is_mono ? sum_of_all(inputs) : fold(input_mask, inputs, target_mask);
    normalise(matrix);
    return matrix;
}

} // namespace kelvane
