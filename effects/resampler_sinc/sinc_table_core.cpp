#include "effects/resampler_sinc/sinc_table_core.h"

#include <cmath>
#include <numbers>

namespace kelvane {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double smallest_sinc_argument = 0.00001;
constexpr int bessel_terms = 18;

double sinc(double x) noexcept {
    return std::fabs(x) < smallest_sinc_argument ? 1.0 : std::sin(x) / x;
}

/// The modified Bessel function of the first kind and order 0: the first terms of Σ (x² ÷ 4)^k ÷ (k!)².
double bessel_i0(double x) noexcept {
    const double quarter_square = x * x / 4.0;
    double sum = 0.0;
    double power = 1.0;
    double factorial = 1.0;
    for (int k = 0; k < bessel_terms; ++k) {
        sum += power / (factorial * factorial);
        power *= quarter_square;
        factorial *= k + 1;
    }
    return sum;
}

/// The filter at one place x of the window.
class lanczos_filter {
public:
    explicit lanczos_filter(const sinc_design& design) noexcept : cutoff_(design.cutoff), taps_(design.taps) {}

    float operator()(double x) const noexcept {
        return static_cast<float>(cutoff_ * sinc(taps_ * (pi / 2.0) * x * cutoff_) * sinc(pi * x));
    }

private:
    double cutoff_;
    double taps_;
};

class kaiser_filter {
public:
    explicit kaiser_filter(const sinc_design& design) noexcept
        : cutoff_(design.cutoff), half_taps_(design.taps / 2.0), beta_(design.kaiser_beta),
          norm_(bessel_i0(static_cast<double>(design.kaiser_beta))) {}

    float operator()(double x) const noexcept {
        const float root = std::sqrt(static_cast<float>(1.0 - x * x));
        const double window = bessel_i0(static_cast<double>(beta_ * root));
        return static_cast<float>(cutoff_ * sinc(pi * half_taps_ * x * cutoff_) * window / norm_);
    }

private:
    double cutoff_;
    double half_taps_;
    float beta_;
    double norm_;
};

/// The coefficients of one phase. `phase` may be one past the last.
template <class Filter>
void fill_row(const sinc_design& design, const Filter& filter, std::uint32_t phase, float* row) noexcept {
    const double places = static_cast<double>(design.taps) * design.phases;
    for (std::uint32_t tap = 0; tap < design.taps; ++tap) {
        const double place = static_cast<double>(tap) * design.phases + phase;
        row[tap] = filter(2.0 * (place / places) - 1.0);
    }
}

void fill_plain(const sinc_design& design, float* table) noexcept {
    const lanczos_filter filter(design);
    for (std::uint32_t phase = 0; phase < design.phases; ++phase) {
        fill_row(design, filter, phase, table + phase * design.row_floats());
    }
}

/// The coefficients of the phase behind a row are computed in the place of its deltas first, and moved on.
void fill_interpolated(const sinc_design& design, float* table) noexcept {
    const kaiser_filter filter(design);
    fill_row(design, filter, 0, table);
    for (std::uint32_t phase = 0; phase < design.phases; ++phase) {
        float* const row = table + phase * design.row_floats();
        float* const deltas = row + design.taps;
        fill_row(design, filter, phase + 1, deltas);
        for (std::uint32_t tap = 0; tap < design.taps; ++tap) {
            const float next = deltas[tap];
            deltas[tap] = next - row[tap];
            if (phase + 1 < design.phases) {
                deltas[design.taps + tap] = next; // the next row's coefficient
            }
        }
    }
}

} // namespace

double needed_sinc_taps(const sinc_quality& quality, double ratio) noexcept {
    const double taps = 2.0 * quality.sidelobes;
    return ratio < 1.0 ? std::ceil(taps / ratio) : taps;
}

sinc_design design_sinc(const sinc_quality& quality, double ratio) noexcept {
    const auto taps = static_cast<std::uint32_t>(needed_sinc_taps(quality, ratio));
    return {.cutoff = ratio < 1.0 ? quality.cutoff * ratio : quality.cutoff,
            .taps = (taps + 3U) / 4U * 4U,
            .phases = std::uint32_t{1} << quality.phase_bits,
            .window = quality.window,
            .kaiser_beta = quality.kaiser_beta};
}

void fill_sinc_table(const sinc_design& design, std::span<float> table) noexcept {
    if (design.is_interpolated()) {
        fill_interpolated(design, table.data());
    } else {
        fill_plain(design, table.data());
    }
}

} // namespace kelvane
