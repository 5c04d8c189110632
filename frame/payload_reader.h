// Reading the payload of a preset.
#pragma once

#include "velmora/settings_stream.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kelvane {

/// A stream over borrowed bytes, which must outlive it. Abort signals are ignored.
class payload_reader final : public velmora::settings_reader {
public:
    explicit payload_reader(std::span<const std::byte> payload) noexcept : payload_(payload) {}

    /// Copies what is left, up to `bytes`, and returns how much that was.
    std::size_t read(void* buffer, std::size_t bytes, velmora::abort_signal* abort) override;

    /// Throws `exception_io_data_truncation` when less than `bytes` is left, and then moves nothing.
    void read_exact(void* buffer, std::size_t bytes, velmora::abort_signal* abort) override;

    /// Passes over what is left, up to `bytes`, and returns how much that was.
    std::uint64_t skip(std::uint64_t bytes, velmora::abort_signal* abort) override;

    /// Throws `exception_io_data_truncation` when less than `bytes` is left, and then moves nothing. Returns the new
    /// position, not the count.
    std::uint64_t skip_exact(std::uint64_t bytes, velmora::abort_signal* abort) override;

    /// Bytes up to the end.
    std::size_t left() const noexcept { return payload_.size() - position_; }

private:
    std::span<const std::byte> payload_;
    std::size_t position_ = 0;
};

// One field each, little-endian; all throw `exception_io_data_truncation` when the field comes short.
std::uint32_t read_u32(payload_reader& payload);
std::int32_t read_i32(payload_reader& payload);
std::uint8_t read_u8(payload_reader& payload);

/// Text behind its length in bytes (32 bits). The length is a claim: nothing is allocated for text that is not there.
std::string read_text(payload_reader& payload);

} // namespace kelvane
