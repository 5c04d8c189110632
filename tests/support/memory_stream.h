// Settings streams in memory.
#pragma once

#include "velmora/settings_stream.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string>

namespace testing_support {

class memory_reader final : public velmora::settings_reader {
public:
    explicit memory_reader(std::string bytes) : bytes_(std::move(bytes)) {}

    std::size_t read(void* buffer, std::size_t bytes, velmora::abort_signal* abort) override {
        signals.insert(abort);
        const std::size_t copied = std::min(bytes, bytes_.size() - position_);
        std::memcpy(buffer, bytes_.data() + position_, copied);
        position_ += copied;
        return copied;
    }
    void read_exact(void*, std::size_t, velmora::abort_signal*) override { throw std::logic_error("not expected"); }
    std::uint64_t skip(std::uint64_t bytes, velmora::abort_signal* abort) override {
        signals.insert(abort);
        const std::uint64_t passed = std::min<std::uint64_t>(bytes, bytes_.size() - position_);
        position_ += passed;
        return passed;
    }
    std::uint64_t skip_exact(std::uint64_t, velmora::abort_signal*) override { throw std::logic_error("not expected"); }

    std::set<velmora::abort_signal*> signals; ///< those that came with the calls

private:
    std::string bytes_;
    std::size_t position_ = 0;
};

class memory_writer final : public velmora::settings_writer {
public:
    void write(const void* data, std::size_t bytes, velmora::abort_signal* abort) override {
        signals.insert(abort);
        written.append(static_cast<const char*>(data), bytes);
    }

    std::string written;
    std::set<velmora::abort_signal*> signals; ///< those that came with the calls
};

} // namespace testing_support
