// The look-ahead limiter as one writes it down: one channel, sample by sample, with a tree of maxima.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace testing_support {

/// The truth that the limiter is held against, and the peer that it is measured against.
class literal_limiter {
public:
    /// Takes a sample and gives the one of 255 samples before.
    double step(double x) {
        double peak = 1.0;
        const double magnitude = std::fabs(x);
        if (magnitude > 1.0) {
            if (!is_active_) {
                tree_ = tree();
            }
            is_active_ = true;
        }
        if (is_active_) {
            peak = enter(magnitude);
            is_active_ = peak > 1.0;
        }
        ring_[position_] = x;
        position_ = (position_ + 1) % 256;
        return apply_gain(ring_[position_], peak);
    }

    /// The largest magnitude that the tree knows of, or 1.0 while it sleeps.
    double peak() const { return is_active_ ? std::fmax(tree_[7][0], tree_[7][1]) : 1.0; }

    double gain() const { return gain_; }

private:
    /// Levels of 256, 128 … 2 nodes; each node of the second level on is the larger of its two children.
    using tree = std::array<std::array<double, 256>, 8>;

    /// What is not a number counts as nothing in a comparison, whichever side it stands on.
    double enter(double magnitude) {
        std::size_t node = position_;
        for (auto& level : tree_) {
            level[node] = magnitude;
            magnitude = std::fmax(level[node ^ 1U], magnitude);
            node /= 2;
        }
        return magnitude;
    }

    double apply_gain(double delayed, double peak) {
        const auto keep = static_cast<double>(0.9F);
        const auto take = static_cast<double>(0.1F);
        const auto rise_keep = static_cast<double>(0.999F);
        const auto rise = static_cast<double>(0.001F);
        const double aimed = is_active_ ? take / peak : take;
        gain_ = rise_keep * gain_ + rise;
        target_ = keep * target_ + aimed;
        if (!(target_ >= gain_)) {
            gain_ = target_;
        }
        if (gain_ * std::fabs(delayed) > 1.0) {
            gain_ = 1.0 / std::fabs(delayed);
        }
        return gain_ * delayed;
    }

    std::size_t position_ = 0;
    std::array<double, 256> ring_{};
    tree tree_{};
    double gain_ = 1.0;
    double target_ = 1.0;
    bool is_active_ = false;
};

} // namespace testing_support
