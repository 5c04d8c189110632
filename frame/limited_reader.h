// A stretch of a stream as a stream of its own.
#pragma once

#include "velmora/settings_stream.h"

#include <cstddef>
#include <cstdint>

namespace kelvane {

/// Reads at most the next `bytes` bytes of `stream`, which must outlive it.
class limited_reader final : public velmora::settings_reader {
public:
    limited_reader(velmora::settings_reader& stream, std::uint64_t bytes) noexcept : stream_(stream), left_(bytes) {}

    std::size_t read(void* buffer, std::size_t bytes, velmora::abort_signal* abort) override;
    void read_exact(void* buffer, std::size_t bytes, velmora::abort_signal* abort) override;
    std::uint64_t skip(std::uint64_t bytes, velmora::abort_signal* abort) override;
    std::uint64_t skip_exact(std::uint64_t bytes, velmora::abort_signal* abort) override;

    /// Bytes up to the end of the stretch.
    std::uint64_t left() const noexcept { return left_; }

private:
    velmora::settings_reader& stream_;
    std::uint64_t position_ = 0;
    std::uint64_t left_;
};

} // namespace kelvane
