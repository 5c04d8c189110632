// What all running effects share.
#pragma once

#include "frame/blocks.h"
#include "velmora/effect_instance.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace velmora {
class block_list;
}

namespace kelvane {

/// An effect without audio of its own needs `on_block` only; `flush`, `get_latency` and the end hooks do nothing here.
///
/// `Interface` is `velmora::effect_instance` or an interface derived from it. The destructor stands behind all slots
/// of the interface and so moves none of them; an instance frees itself when its last reference goes.
template <class Interface>
class basic_effect : public Interface {
public:
    basic_effect() = default;
    basic_effect(const basic_effect&) = delete;
    basic_effect& operator=(const basic_effect&) = delete;
    virtual ~basic_effect() = default;

    std::uint32_t release() override;
    std::uint32_t add_ref() override;
    bool query(velmora::service** out, const velmora::guid* asked_class) override;

    void run(velmora::block_list* list, void* track, std::uint32_t flags) override;
    void flush() override {}
    double get_latency() override { return 0.0; }
    bool needs_track_change_mark() override { return false; }
    void run_abortable(velmora::block_list* list, void* track, std::uint32_t flags,
                       velmora::abort_signal* abort) override;
    void on_track_end(velmora::abort_signal*) override {}
    void on_playback_end(velmora::abort_signal*) override {}

protected:
    /// Puts a new block of whole frames before the one that is being processed, or behind the last one at the end of a
    /// track or of playback. The loop does not visit it. Only during a run: elsewhere it stops the process. Throws a
    /// bad allocation of the host and then leaves the list as it was.
    void emit_block(std::span<const double> samples, const stream_format& format);

    /// The same with samples that `write` makes: it gets a span of `frames` × channels of them to fill, when nothing
    /// can fail any more.
    template <class Write>
    void emit_block(std::size_t frames, const stream_format& format, Write write) {
        emit_all_or_nothing([&] { fill_block(insert_block(frames * format.channels), frames, format, write); });
    }

    /// Calls `emit`, which emits any number of blocks. When an exception leaves it, they are taken out again: what they
    /// were made of can then be kept for the next call.
    template <class Emit>
    void emit_all_or_nothing(Emit emit) {
        const std::size_t first = context_.index;
        try {
            emit();
        } catch (...) {
            remove_blocks_since(first);
            throw;
        }
    }

    /// The host's opaque name of the current track; null outside a run.
    void* current_track() const noexcept { return context_.track; }

private:
    /// Where the current call is. The index is part of it because emitting moves it.
    struct run_context {
        velmora::block_list* list = nullptr;
        void* track = nullptr;
        std::size_t index = 0;
    };

    /// Puts the surrounding call's context back, also when an exception passes.
    class scoped_context {
    public:
        scoped_context(run_context& current, const run_context& entered) noexcept
            : current_(current), surrounding_(current) {
            current = entered;
        }
        ~scoped_context() { current_ = surrounding_; }
        scoped_context(const scoped_context&) = delete;
        scoped_context& operator=(const scoped_context&) = delete;

    private:
        run_context& current_;
        run_context surrounding_;
    };

    void run_blocks(velmora::abort_signal* abort);
    velmora::sample_block& insert_block(std::size_t samples);
    void remove_blocks_since(std::size_t first);

    std::atomic<std::uint32_t> references_ = 0;
    run_context context_;
};

extern template class basic_effect<velmora::effect_instance>;
extern template class basic_effect<velmora::matrix_effect_instance>;

using effect_base = basic_effect<velmora::effect_instance>;

} // namespace kelvane
