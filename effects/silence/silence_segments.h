// The audio that the silence skipper holds back.
#pragma once

#include "effects/silence/recycled_queue.h"
#include "effects/silence/silence_segment_core.h"
#include "frame/blocks.h"
#include "frame/sample_buffer.h"

#include <cstddef>
#include <span>

namespace kelvane {

/// A queue of segments, each a row of pieces: copies of frames of one block, in that block's format. Memory is taken
/// once for a segment and used again by those that come later.
class silence_segments {
public:
    /// Segments whose peak stays below `threshold_db` of full scale are silent.
    explicit silence_segments(double threshold_db) noexcept : threshold_db_(threshold_db) {}

    std::size_t size() const noexcept { return segments_.size(); }

    /// Frames of this rate that the last segment still takes; 0 when it is full or there is none.
    std::size_t room_frames(std::uint32_t rate_hz) noexcept;

    /// Puts an empty segment behind the last one.
    void start();

    /// Copies whole frames behind the last segment's others. `peak` is their largest magnitude. Throws
    /// `bad_allocation` and then leaves the segments as they were.
    void append(std::span<const double> samples, const stream_format& format, double peak);

    /// How many segments in a row are silent from the head on, looking at no more than `limit`. A segment is looked at
    /// once only: those within the limit must have got all their audio.
    std::size_t silent_at_head(std::size_t limit) noexcept;

    /// Whether all segments are silent, the last one as far as it has got.
    bool are_all_silent() const noexcept;

    /// Calls `use(std::span<const double> samples, const stream_format&)` for each piece of a segment, in order. The
    /// head has the index 0.
    template <class Use>
    void for_pieces_of(std::size_t index, Use use) const {
        const segment& asked = segments_[index];
        const std::size_t before = asked.first_piece - segments_[0].first_piece;
        const double* first = asked.memory.data();
        for (std::size_t i = 0; i < asked.pieces; ++i) {
            const piece& one = pieces_[before + i];
            use(std::span<const double>(first, one.samples), one.format);
            first += one.samples;
        }
    }

    /// Lets the head go.
    void pop() noexcept;

    void clear() noexcept;

    /// Of all segments, in seconds.
    double duration_s() const noexcept;

private:
    struct piece {
        stream_format format;
        std::size_t samples = 0;
    };

    struct segment {
        silence_segment_measure measure;
        std::size_t first_piece = 0; ///< pieces of all segments before it since the queue was last empty
        std::size_t pieces = 0;
        std::size_t samples = 0; ///< of all its pieces, one behind the other in the memory
        sample_buffer memory;
    };

    static void make_room(segment& grown, std::size_t samples, std::size_t samples_to_come);

    double threshold_db_;
    recycled_queue<segment> segments_;
    recycled_queue<piece> pieces_; ///< those of the first segment, then those of the second, and so on
    std::size_t found_silent_ = 0; ///< segments in a row from the head on that are known to be silent
};

} // namespace kelvane
