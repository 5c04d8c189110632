// One running effect in the host's chain.
#pragma once

#include "velmora/service.h"

#include <stdint.h>

namespace velmora {

class abort_signal;
class block_list;
class sample_block;

/// The flags of `run` and `run_abortable`.
namespace run_flag {
inline constexpr uint32_t end_of_track = 1;    ///< the current track ends behind this list
inline constexpr uint32_t end_of_playback = 2; ///< playback ends behind this list
} // namespace run_flag

/// Driven by one thread at a time; only the counting may come from others. Blocks, lists and signals are borrowed for
/// the length of a call. While an instance asks a list for its count or for a block, or removes one, another run of the
/// same instance may be nested; while it fills a block or inserts one, its audio is on the way, and it must not be run,
/// ended or flushed.
class effect_instance : public service {
public:
    static constexpr guid class_id{0x9FB1DA49, 0xAF6F, 0x4FD2, {0x9C, 0x73, 0x48, 0xA8, 0xA1, 0x09, 0x00, 0x3B}};

    /// The identity of the interface's second generation. Every instance answers to both.
    static constexpr guid abortable_class_id{
        0x2A42AFEA, 0x940B, 0x455B, {0xAE, 0xFF, 0xCF, 0xDA, 0xCA, 0xF5, 0x2A, 0xFF}};

    /// `run_abortable` with a signal that never fires. [playback-thread]
    virtual void run(block_list* list, void* track, uint32_t flags) = 0;

    /// Forgets all audio that is held back, as on a seek. Emits nothing, never throws. [playback-thread]
    virtual void flush() = 0;

    /// Audio that is held back now, in seconds. Never throws. [playback-thread]
    virtual double get_latency() = 0;

    /// Whether `on_track_end` wants to be called. Never throws. [playback-thread]
    virtual bool needs_track_change_mark() = 0;

    /// Takes every block of `list` through the effect: a block may be rewritten, removed, or have new ones put before
    /// it. `track` is the host's opaque name of the track; `flags` are of `run_flag`. Throws std::exception; the list
    /// then holds what was done so far. [playback-thread]
    virtual void run_abortable(block_list* list, void* track, uint32_t flags, abort_signal* abort) = 0;

    /// Called by `run_abortable` behind a track's last block, if asked for. May throw. [playback-thread]
    virtual void on_track_end(abort_signal* abort) = 0;

    /// Called by `run_abortable` behind the very last block. May throw. [playback-thread]
    virtual void on_playback_end(abort_signal* abort) = 0;

    /// Called by `run_abortable` for each block. False takes the block out of the list. May throw. [playback-thread]
    virtual bool on_block(sample_block* block, abort_signal* abort) = 0;

protected:
    ~effect_instance() = default;
};

/// An effect that multiplies every frame by a matrix of coefficients.
class matrix_effect_instance : public effect_instance {
public:
    /// Makes the matrix for the speakers of the current input; false when they cannot be mapped. May throw a bad
    /// allocation. [playback-thread]
    virtual bool rebuild_matrix() = 0;

protected:
    ~matrix_effect_instance() = default;
};

} // namespace velmora
