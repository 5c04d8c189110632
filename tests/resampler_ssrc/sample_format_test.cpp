#include "effects/resampler_ssrc/sample_format.h"

#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace kelvane::ssrc {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

wave_format described(std::uint16_t tag, std::uint16_t bits) {
    wave_format format = float64_format(44100, 2);
    format.format_tag = tag;
    format.bits_per_sample = bits;
    return format;
}

wave_format extensible(const velmora::guid& sub_format, std::uint16_t bits, std::uint16_t extra_bytes = 22) {
    wave_format format = described(tag_extensible, bits);
    format.extra_bytes = extra_bytes;
    format.sub_format = sub_format;
    return format;
}

TEST(SampleFormat, TheDescriptionNamesTheSamples) {
    const velmora::guid unknown{0x12345678, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
    struct row {
        const char* name;
        wave_format format;
        std::optional<sample_code> code;
    };
    const std::array rows{
        row{"float 64", described(3, 64), sample_code::float64},
        row{"float 32", described(3, 32), sample_code::float32},
        row{"float of no kind", described(3, 16), std::nullopt},
        row{"integer 8", described(1, 8), sample_code::integer8},
        row{"integer 16", described(1, 16), sample_code::integer16},
        row{"integer 24", described(1, 24), sample_code::integer24},
        row{"integer 32", described(1, 32), sample_code::integer32},
        row{"integer 20", described(1, 20), std::nullopt},
        row{"integer 64", described(1, 64), std::nullopt},
        row{"no bits", described(1, 0), std::nullopt},
        row{"another tag", described(7, 16), sample_code::integer16},
        row{"extensible float 64", extensible(sub_format_float, 64), sample_code::float64},
        row{"extensible float 32", extensible(sub_format_float, 32), sample_code::float32},
        row{"extensible integer 32", extensible(sub_format_integer, 32), sample_code::integer32},
        row{"extensible unknown 24", extensible(unknown, 24), sample_code::integer24},
        row{"extensible too short for its float", extensible(sub_format_float, 32, 21), sample_code::integer32},
        row{"extensible with more", extensible(sub_format_float, 32, 40), sample_code::float32},
    };
    for (const row& expected : rows) {
        EXPECT_EQ(sample_code_of(expected.format), expected.code) << expected.name;
    }
}

TEST(SampleFormat, TheCodesHaveTheirNumbersAndWidths) {
    const std::array<std::size_t, 6> bytes{2, 3, 1, 4, 4, 8};
    for (std::size_t code = 0; code < bytes.size(); ++code) {
        EXPECT_EQ(bytes_per_sample(static_cast<sample_code>(code)), bytes[code]) << code;
    }
}

TEST(SampleFormat, A64BitStreamIsDescribedInFull) {
    const wave_format format = float64_format(48000, 6);
    EXPECT_EQ(format.format_tag, 3);
    EXPECT_EQ(format.block_bytes, 48);
    EXPECT_EQ(format.bytes_per_s, 48000U * 48U);
    EXPECT_EQ(format.extra_bytes, 0);
}

std::vector<std::byte> bytes_of(std::int64_t value, std::size_t count) {
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes.push_back(static_cast<std::byte>(static_cast<std::uint64_t>(value) >> (8 * i)));
    }
    return bytes;
}

double decoded(sample_code code, const std::vector<std::byte>& bytes) {
    double value = 0.0;
    decode(code, bytes.data(), bytes.size(), &value, 1);
    return value;
}

std::vector<std::byte> encoded(sample_code code, double value) {
    std::vector<std::byte> bytes(bytes_per_sample(code));
    encode(code, &value, bytes.data(), bytes.size(), 1);
    return bytes;
}

struct integer_kind {
    sample_code code;
    int bits;
    std::int64_t silence;
};

constexpr std::array<integer_kind, 4> integer_kinds{{{sample_code::integer8, 8, 128},
                                                     {sample_code::integer16, 16, 0},
                                                     {sample_code::integer24, 24, 0},
                                                     {sample_code::integer32, 32, 0}}};

TEST(SampleFormat, IntegersScaleByTheirFullScale) {
    for (const integer_kind& kind : integer_kinds) {
        const std::size_t bytes = bytes_per_sample(kind.code);
        const std::int64_t full = std::int64_t{1} << (kind.bits - 1);
        for (const std::int64_t value :
             {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, full - 1, -full, full / 2, -full / 2}) {
            const double level = static_cast<double>(value) / static_cast<double>(full);
            EXPECT_EQ(decoded(kind.code, bytes_of(value + kind.silence, bytes)), level)
                << kind.bits << " bits, " << value;
            EXPECT_EQ(encoded(kind.code, level), bytes_of(value + kind.silence, bytes))
                << kind.bits << " bits, " << value;
        }
    }
}

TEST(SampleFormat, IntegersAreRoundedAndClipped) {
    for (const integer_kind& kind : integer_kinds) {
        const std::int64_t full = std::int64_t{1} << (kind.bits - 1);
        const double step = 1.0 / static_cast<double>(full);
        struct row {
            double value;
            std::int64_t stored;
        };
        for (const row& expected :
             {row{0.5 * step, 1}, row{-0.5 * step, -1}, row{1.5 * step, 2}, row{-1.5 * step, -2}, row{0.49 * step, 0},
              row{-0.49 * step, 0}, row{2.49 * step, 2}, row{-2.51 * step, -3}, row{1.0, full - 1},
              row{1.0 - 0.4 * step, full - 1}, row{-1.0 - 0.4 * step, -full}, row{-1.0 - 3.0 * step, -full},
              row{1e300, full - 1}, row{-1e300, -full}, row{infinity, full - 1}, row{-infinity, -full},
              row{std::nan(""), 0}}) {
            EXPECT_EQ(encoded(kind.code, expected.value),
                      bytes_of(expected.stored + kind.silence, bytes_per_sample(kind.code)))
                << kind.bits << " bits, " << expected.value;
        }
    }
}

TEST(SampleFormat, FloatsPass) {
    for (const double value : {0.0, -0.0, 1.0, -3.5, 0.1, 1e-320, infinity}) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(decoded(sample_code::float64, encoded(sample_code::float64, value))),
                  std::bit_cast<std::uint64_t>(value))
            << value;
    }
    EXPECT_EQ(decoded(sample_code::float32, bytes_of(std::bit_cast<std::int32_t>(0.1F), 4)), static_cast<double>(0.1F));
    EXPECT_EQ(encoded(sample_code::float32, 0.1), bytes_of(std::bit_cast<std::int32_t>(0.1F), 4));
    EXPECT_EQ(decoded(sample_code::float32, encoded(sample_code::float32, 1e300)), infinity);
    EXPECT_EQ(decoded(sample_code::float32, encoded(sample_code::float32, -1e300)), -infinity);
    EXPECT_TRUE(std::isnan(decoded(sample_code::float32, encoded(sample_code::float32, std::nan("")))));
}

TEST(SampleFormat, OneChannelIsTakenOutOfManyAndPutBack) {
    std::vector<std::byte> frames;
    for (std::int64_t i = 0; i < 12; ++i) { // three channels
        const auto bytes = bytes_of(100 * i, 3);
        frames.insert(frames.end(), bytes.begin(), bytes.end());
    }
    std::vector<double> middle(4);
    decode(sample_code::integer24, frames.data() + 3, 9, middle.data(), 4);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(middle[i], static_cast<double>(100 * (3 * i + 1)) / 8388608.0);
    }
    std::vector<std::byte> copy(frames.size());
    for (std::size_t channel = 0; channel < 3; ++channel) {
        decode(sample_code::integer24, frames.data() + 3 * channel, 9, middle.data(), 4);
        encode(sample_code::integer24, middle.data(), copy.data() + 3 * channel, 9, 4);
    }
    EXPECT_EQ(copy, frames);
}

} // namespace
} // namespace kelvane::ssrc
