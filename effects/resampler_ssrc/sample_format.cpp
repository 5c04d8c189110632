#include "effects/resampler_ssrc/sample_format.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace kelvane::ssrc {

namespace {

bool is_float(const wave_format& format) noexcept {
    return format.format_tag == tag_float ||
           (format.format_tag == tag_extensible && format.extra_bytes >= extensible_extra_bytes &&
            format.sub_format == sub_format_float);
}

std::optional<sample_code> integer_code(std::uint16_t bits) noexcept {
    switch (bits) {
    case 8:
        return sample_code::integer8;
    case 16:
        return sample_code::integer16;
    case 24:
        return sample_code::integer24;
    case 32:
        return sample_code::integer32;
    default:
        return std::nullopt;
    }
}

/// Both directions of a float sample.
template <class Float>
struct float_samples {
    static_assert(std::numeric_limits<Float>::is_iec559); // what is too large becomes infinite
    static constexpr std::size_t bytes = sizeof(Float);

    static double read(const std::byte* from) noexcept {
        Float value;
        std::memcpy(&value, from, sizeof value);
        return static_cast<double>(value);
    }
    static void write(double value, std::byte* to) noexcept {
        const auto narrowed = static_cast<Float>(value);
        std::memcpy(to, &narrowed, sizeof narrowed);
    }
};

/// Both directions of an integer sample; `Offset` is the stored value of silence.
template <int Bits, std::int64_t Offset>
struct integer_samples {
    static constexpr std::size_t bytes = Bits / 8;
    static constexpr std::int64_t full_scale = std::int64_t{1} << (Bits - 1);

    static double read(const std::byte* from) noexcept {
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < bytes; ++i) {
            bits |= std::to_integer<std::uint64_t>(from[i]) << (8 * i);
        }
        const auto stored = static_cast<std::int64_t>(bits);
        const std::int64_t value = Offset != 0 ? stored - Offset : (stored ^ full_scale) - full_scale; // sign extended
        return static_cast<double>(value) / static_cast<double>(full_scale);
    }
    static void write(double value, std::byte* to) noexcept {
        const auto bits = static_cast<std::uint64_t>(rounded(value * static_cast<double>(full_scale)) + Offset);
        for (std::size_t i = 0; i < bytes; ++i) {
            to[i] = static_cast<std::byte>(bits >> (8 * i));
        }
    }

private:
    /// Halves away from zero, then clipped.
    static std::int64_t rounded(double value) noexcept {
        if (std::isnan(value)) {
            return 0;
        }
        const double shifted = value + std::copysign(0.5, value);
        if (shifted >= static_cast<double>(full_scale)) {
            return full_scale - 1;
        }
        return shifted <= static_cast<double>(-full_scale) ? -full_scale : static_cast<std::int64_t>(shifted);
    }
};

/// Calls the function with the kind of sample that the code names.
template <class Function>
auto with_samples(sample_code code, Function&& function) noexcept {
    switch (code) {
    case sample_code::integer16:
        return function(integer_samples<16, 0>{});
    case sample_code::integer24:
        return function(integer_samples<24, 0>{});
    case sample_code::integer8:
        return function(integer_samples<8, 128>{});
    case sample_code::integer32:
        return function(integer_samples<32, 0>{});
    case sample_code::float32:
        return function(float_samples<float>{});
    default:
        return function(float_samples<double>{});
    }
}

} // namespace

wave_format float64_format(std::uint32_t rate_hz, std::uint16_t channels) noexcept {
    wave_format format;
    format.format_tag = tag_float;
    format.channels = channels;
    format.rate_hz = rate_hz;
    format.block_bytes = static_cast<std::uint16_t>(channels * sizeof(double));
    format.bytes_per_s = rate_hz * format.block_bytes;
    format.bits_per_sample = 64;
    return format;
}

std::optional<sample_code> sample_code_of(const wave_format& format) noexcept {
    if (!is_float(format)) {
        return integer_code(format.bits_per_sample);
    }
    switch (format.bits_per_sample) {
    case 64:
        return sample_code::float64;
    case 32:
        return sample_code::float32;
    default:
        return std::nullopt;
    }
}

std::size_t bytes_per_sample(sample_code code) noexcept {
    return with_samples(code, [](auto samples) { return decltype(samples)::bytes; });
}

void decode(sample_code code, const std::byte* first, std::size_t frame_bytes, double* to,
            std::size_t frames) noexcept {
    with_samples(code, [=](auto samples) {
        for (std::size_t i = 0; i < frames; ++i) {
            to[i] = decltype(samples)::read(first + i * frame_bytes);
        }
    });
}

void encode(sample_code code, const double* from, std::byte* first, std::size_t frame_bytes,
            std::size_t frames) noexcept {
    with_samples(code, [=](auto samples) {
        for (std::size_t i = 0; i < frames; ++i) {
            decltype(samples)::write(from[i], first + i * frame_bytes);
        }
    });
}

} // namespace kelvane::ssrc
