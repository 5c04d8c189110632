// Instances of "Resampler (RetroArch)" from presets made by hand.
#pragma once

#include "tests/support/built_module.h"
#include "tests/support/u32_bytes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace testing_support {

inline constexpr auto sinc_name = "Resampler (RetroArch)";

/// Target rate, quality, 1 byte whether the exclusions count, and their text behind its length; little-endian.
inline std::vector<std::uint8_t> sinc_payload(std::uint32_t target_hz, std::uint32_t quality, bool excludes = false,
                                              const std::string& exclusions = "") {
    const auto length = u32_bytes({static_cast<std::uint32_t>(exclusions.size())});
    auto bytes = u32_bytes({target_hz, quality});
    bytes.push_back(excludes ? 1 : 0);
    bytes.insert(bytes.end(), length.begin(), length.end());
    bytes.insert(bytes.end(), exclusions.begin(), exclusions.end());
    return bytes;
}

inline host::service_ptr<velmora::effect_instance> make_sinc(const std::vector<std::uint8_t>& payload) {
    return make_effect(sinc_name, payload);
}

inline host::service_ptr<velmora::effect_instance> make_sinc(std::uint32_t target_hz, std::uint32_t quality) {
    return make_sinc(sinc_payload(target_hz, quality));
}

} // namespace testing_support
