#include "tests/support/literal_layout.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace testing_support {

namespace {

using names = std::set<std::string>;

/// Weights by the names of the output and the input speaker.
class named_weights {
public:
    named_weights(names inputs, names outputs) : inputs_(std::move(inputs)), outputs_(std::move(outputs)) {}

    void add(const std::string& input, const std::string& output, double weight) {
        if (inputs_.contains(input) && outputs_.contains(output)) {
            weights_[output][input] += weight;
        }
    }

    double get(const std::string& output, const std::string& input) { return weights_[output][input]; }

private:
    names inputs_;
    names outputs_;
    std::map<std::string, std::map<std::string, double>> weights_;
};

bool has_either(const names& set, const std::string& left, const std::string& right) {
    return set.contains(left) || set.contains(right);
}

void drop(names& set, const std::string& left, const std::string& right) {
    set.erase(left);
    set.erase(right);
}

names without(const names& all, const names& taken) {
    names rest;
    std::set_difference(all.begin(), all.end(), taken.begin(), taken.end(), std::inserter(rest, rest.end()));
    return rest;
}

void place_swapped_pairs(named_weights& weights, names& missing, const names& absent) {
    if (has_either(missing, "SL", "SR") && has_either(absent, "BL", "BR")) {
        weights.add("SL", "BL", 1.0);
        weights.add("SR", "BR", 1.0);
        drop(missing, "SL", "SR");
    }
    if (has_either(missing, "BL", "BR") && has_either(absent, "SL", "SR")) {
        weights.add("BL", "SL", 1.0);
        weights.add("BR", "SR", 1.0);
        drop(missing, "BL", "BR");
    }
}

void place_centres(named_weights& weights, names& missing, const names& target) {
    if (missing.contains("FC")) {
        weights.add("FC", "FL", 0.5);
        weights.add("FC", "FR", 0.5);
    }
    if (missing.contains("BC") && has_either(target, "BL", "BR")) {
        weights.add("BC", "BL", 0.5);
        weights.add("BC", "BR", 0.5);
    }
}

void place_back(named_weights& weights, const names& missing, const names& target) {
    if (has_either(missing, "BL", "BR")) {
        const bool to_sides = has_either(target, "SL", "SR");
        weights.add("BL", to_sides ? "SL" : "FL", 1.0);
        weights.add("BR", to_sides ? "SR" : "FR", 1.0);
    }
}

void place_sides(named_weights& weights, const names& missing, const names& target) {
    if (!has_either(missing, "SL", "SR")) {
        return;
    }
    if (has_either(target, "BL", "BR")) {
        weights.add("SL", "BL", 0.5);
        weights.add("SL", "FL", 0.5);
        weights.add("SR", "BR", 0.5);
        weights.add("SR", "FR", 0.5);
    } else {
        weights.add("SL", "FL", 1.0);
        weights.add("SR", "FR", 1.0);
    }
}

void place_beside_centre(named_weights& weights, const names& missing, const names& target) {
    if (!has_either(missing, "FLC", "FRC")) {
        return;
    }
    if (target.contains("FL") && target.contains("FR") && target.contains("FC")) {
        for (const char* const side : {"L", "R"}) {
            const std::string from = std::string("F") + side + "C";
            weights.add(from, "FC", 0.5);
            weights.add(from, std::string("F") + side, 0.5);
        }
    } else if (target.contains("FC")) {
        weights.add("FLC", "FC", 1.0);
        weights.add("FRC", "FC", 1.0);
    } else if (has_either(target, "FL", "FR")) {
        weights.add("FLC", "FL", 1.0);
        weights.add("FRC", "FR", 1.0);
    }
}

named_weights placed(const names& inputs, const names& target) {
    named_weights weights(inputs, target);
    for (const std::string& speaker : inputs) {
        weights.add(speaker, speaker, 1.0);
    }
    names missing = without(inputs, target);
    place_swapped_pairs(weights, missing, without(target, inputs));
    place_centres(weights, missing, target);
    place_back(weights, missing, target);
    place_sides(weights, missing, target);
    place_beside_centre(weights, missing, target);
    return weights;
}

void normalise(weight_rows& matrix) {
    double largest = 1.0;
    for (const auto& row : matrix) {
        double sum = 0.0;
        for (const double weight : row) {
            sum = sum + weight;
        }
        largest = std::max(largest, sum);
    }
    for (auto& row : matrix) {
        for (double& weight : row) {
            weight = weight * (1.0 / largest);
        }
    }
}

} // namespace

std::vector<std::string> speakers_of(std::uint32_t channel_mask) {
    static const std::vector<std::string> known{"FL", "FR", "FC", "LFE", "BL", "BR", "FLC", "FRC", "BC", "SL", "SR"};
    std::vector<std::string> found;
    for (std::size_t bit = 0; bit < 32; ++bit) {
        if ((channel_mask >> bit & 1U) != 0) {
            found.push_back(bit < known.size() ? known[bit] : "bit " + std::to_string(bit));
        }
    }
    return found;
}

weight_rows literal_layout_matrix(std::uint32_t input_mask, std::uint32_t target_mask) {
    const auto inputs = speakers_of(input_mask);
    const auto outputs = speakers_of(target_mask);
    named_weights weights = placed({inputs.begin(), inputs.end()}, {outputs.begin(), outputs.end()});
    weight_rows matrix(outputs.size());
    for (std::size_t output = 0; output < outputs.size(); ++output) {
        for (const std::string& input : inputs) {
            matrix[output].push_back(target_mask == 0x4 ? 1.0 : weights.get(outputs[output], input));
        }
    }
    normalise(matrix);
    return matrix;
}

std::vector<double> multiply(const weight_rows& matrix, const std::vector<double>& in, std::size_t inputs) {
    std::vector<double> out;
    for (std::size_t first = 0; first < in.size(); first += inputs) {
        for (const auto& row : matrix) {
            double sum = 0.0;
            for (std::size_t input = 0; input < inputs; ++input) {
                sum = sum + in[first + input] * row[input];
            }
            out.push_back(sum);
        }
    }
    return out;
}

} // namespace testing_support
