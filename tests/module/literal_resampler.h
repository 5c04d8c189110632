// The effect around the windowed-sinc converter as one writes it down: frame by frame, with lists.
#pragma once

#include "effects/resampler_sinc/sinc_resampler_core.h"
#include "tests/module/run_effect.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <set>
#include <vector>

namespace testing_support {

/// Takes whole stretches of audio and gathers what comes out. The converter itself is the module's.
class literal_resampler {
public:
    literal_resampler(std::uint32_t target_hz, std::uint32_t quality, std::set<std::uint32_t> excluded_hz)
        : target_hz_(target_hz), quality_(quality), excluded_hz_(std::move(excluded_hz)) {}

    void play(const stretch& audio);
    void flush();
    void end();
    double latency_s() const;

    programme out; ///< stretches of one format

private:
    using frame = std::vector<double>;

    void change_format(const block_format& format);
    void take(const frame& one);
    void prime();
    void drain();
    void convert(const std::vector<frame>& frames);
    void emit(const block_format& format, const std::vector<double>& samples);
    std::vector<frame> continuation(const std::vector<frame>& frames, std::size_t count) const;

    std::uint32_t target_hz_;
    std::uint32_t quality_;
    std::set<std::uint32_t> excluded_hz_;
    block_format format_{};
    std::unique_ptr<kelvane::sinc_resampler> converter_;
    std::deque<frame> held_;
    bool is_primed_ = false;
    std::uint64_t taken_ = 0;
    std::uint64_t emitted_ = 0;
    std::uint64_t unwanted_ = 0;
    std::uint64_t allowed_ = UINT64_MAX; ///< frames that may still come out
};

} // namespace testing_support
