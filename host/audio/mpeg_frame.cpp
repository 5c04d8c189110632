#include "host/audio/mpeg_frame.h"

#include "host/audio/byte_order.h"

#include <array>

namespace host {

namespace {

constexpr std::uint32_t sync_bits = 0xFFE00000;
constexpr std::uint32_t layer_3 = 1;
constexpr std::uint32_t single_channel = 3;

/// By the version's two bits: a quarter of the rates, none, half, all.
constexpr std::array<std::uint32_t, 4> rate_divisors{4, 0, 2, 1};
constexpr std::array<std::uint32_t, 4> full_rates_hz{44100, 48000, 32000, 0};

// 0: of no fixed rate, or not allowed.
constexpr std::array<std::uint32_t, 16> full_rate_kbps{0,   32,  40,  48,  56,  64,  80,  96,
                                                       112, 128, 160, 192, 224, 256, 320, 0};
constexpr std::array<std::uint32_t, 16> lower_rate_kbps{0,  8,  16, 24,  32,  40,  48,  56,
                                                        64, 80, 96, 112, 128, 144, 160, 0};

std::size_t side_information_bytes(bool is_full_rate, std::uint32_t channels) {
    if (is_full_rate) {
        return channels == 1 ? 17 : 32;
    }
    return channels == 1 ? 9 : 17;
}

} // namespace

std::optional<mpeg_frame> parse_mpeg_header(std::span<const std::byte> header) {
    const auto bits = load<std::uint32_t>(header.first(mpeg_header_bytes), std::endian::big);
    const auto field = [bits](unsigned lowest_bit, std::uint32_t mask) { return bits >> lowest_bit & mask; };
    const std::uint32_t divisor = rate_divisors[field(19, 3)];
    const std::uint32_t full_rate_hz = full_rates_hz[field(10, 3)];
    const bool is_full_rate = divisor == 1;
    const std::uint32_t kbps = (is_full_rate ? full_rate_kbps : lower_rate_kbps)[field(12, 15)];
    if ((bits & sync_bits) != sync_bits || field(17, 3) != layer_3 || divisor * full_rate_hz * kbps == 0) {
        return std::nullopt;
    }
    const std::uint32_t rate_hz = full_rate_hz / divisor;
    const std::uint32_t channels = field(6, 3) == single_channel ? 1 : 2;
    const std::uint32_t frame_samples_in_bytes = is_full_rate ? 144 : 72; // 1152 or 576 samples, 8 bits a byte
    const std::uint32_t size_bytes = frame_samples_in_bytes * kbps * 1000 / rate_hz + field(9, 1);
    return mpeg_frame{size_bytes, mpeg_header_bytes + side_information_bytes(is_full_rate, channels), rate_hz,
                      channels};
}

} // namespace host
