// The host's texts, presets, streams and services, made by hand as the blocks are.
#pragma once

#include "tests/abi/raw_object.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace abi_test {

/// A string_receiver.
struct hand_made_text {
    hand_made_text();

    const any_function* table;
    std::string text = "old text";
    std::size_t length = 0; ///< that the last text was handed over with
};

/// A host_api.
struct hand_made_host {
    hand_made_host();

    const any_function* table;
    bool is_main_thread = true;
    std::size_t questions = 0; ///< how often it was asked which thread it is
    std::vector<std::string> console;
};

/// An effect_preset.
struct hand_made_preset {
    hand_made_preset();

    const any_function* table;
    guid_bytes owner{};
    std::vector<std::uint8_t> payload;
};

/// A counted service that answers no query.
struct hand_made_service {
    hand_made_service();

    const any_function* table;
    std::uint32_t references = 1;
};

/// A settings_reader over bytes in memory.
struct hand_made_reader {
    explicit hand_made_reader(std::string content);

    const any_function* table;
    std::string bytes;
    std::size_t position = 0;
};

/// A settings_writer into memory.
struct hand_made_writer {
    hand_made_writer();

    const any_function* table;
    std::string bytes;
};

} // namespace abi_test
