#include "host/audio/sample_codec.h"

#include "host/audio/byte_order.h"
#include "host/audio/quantise.h"

#include <bit>
#include <cstdint>

namespace host {

namespace {

/// Unsigned and signed samples differ in their highest bit.
constexpr std::uint32_t sign_flip(std::size_t sample_bytes) {
    return sample_bytes == 1 ? 0x80U : 0U;
}

template <std::size_t Bytes>
void decode_integers(std::span<const std::byte> bytes, std::span<double> samples) {
    constexpr double step = 1.0 / 0x80000000;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto stored = load<std::uint32_t>(bytes.subspan(i * Bytes, Bytes)) ^ sign_flip(Bytes);
        samples[i] = step * static_cast<std::int32_t>(stored << (32 - 8 * Bytes));
    }
}

template <std::size_t Bytes>
void encode_integers(std::span<const double> samples, std::span<std::byte> bytes) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto value = static_cast<std::uint32_t>(quantise(samples[i], 8 * Bytes));
        store(bytes.subspan(i * Bytes, Bytes), value ^ sign_flip(Bytes));
    }
}

template <class Float, std::unsigned_integral Bits>
void decode_floats(std::span<const std::byte> bytes, std::span<double> samples) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] =
            static_cast<double>(std::bit_cast<Float>(load<Bits>(bytes.subspan(i * sizeof(Bits), sizeof(Bits)))));
    }
}

template <class Float, std::unsigned_integral Bits>
void encode_floats(std::span<const double> samples, std::span<std::byte> bytes) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        store(bytes.subspan(i * sizeof(Bits), sizeof(Bits)), std::bit_cast<Bits>(static_cast<Float>(samples[i])));
    }
}

} // namespace

void decode_samples(const sample_layout& layout, std::span<const std::byte> bytes, std::span<double> samples) {
    if (layout.is_float) {
        return layout.bytes == 4 ? decode_floats<float, std::uint32_t>(bytes, samples)
                                 : decode_floats<double, std::uint64_t>(bytes, samples);
    }
    switch (layout.bytes) {
    case 1:
        return decode_integers<1>(bytes, samples);
    case 2:
        return decode_integers<2>(bytes, samples);
    case 3:
        return decode_integers<3>(bytes, samples);
    default:
        return decode_integers<4>(bytes, samples);
    }
}

void encode_samples(const sample_layout& layout, std::span<const double> samples, std::span<std::byte> bytes) {
    if (layout.is_float) {
        return layout.bytes == 4 ? encode_floats<float, std::uint32_t>(samples, bytes)
                                 : encode_floats<double, std::uint64_t>(samples, bytes);
    }
    switch (layout.bytes) {
    case 1:
        return encode_integers<1>(samples, bytes);
    case 2:
        return encode_integers<2>(samples, bytes);
    case 3:
        return encode_integers<3>(samples, bytes);
    default:
        return encode_integers<4>(samples, bytes);
    }
}

} // namespace host
