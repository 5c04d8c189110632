// The polyphase stage's dot products, on vectors of four doubles.
#pragma once

#include "effects/resampler_ssrc/complex_of_four.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>

namespace kelvane::ssrc {

template <class Four>
class polyphase_of_four {
public:
    static void run(const polyphase_tables& tables, polyphase_position& position, const double* frames, double* out,
                    std::size_t count) {
        switch (tables.stride) {
        case 4:
            return run_rows<1>(tables, position, frames, out, count);
        case 8:
            return run_rows<2>(tables, position, frames, out, count);
        case 12:
            return run_rows<3>(tables, position, frames, out, count);
        default:
            return run_rows<0>(tables, position, frames, out, count);
        }
    }

private:
    /// The products of one output, summed up in each lane. `Vectors` is the length of a row, 0 for any.
    template <std::size_t Vectors>
    static Four lane_sums(const polyphase_tables& tables, polyphase_position& position, const double* frames) {
        const double* row = tables.coefficients + tables.stride * position.row;
        const double* window = frames + position.frame;
        Four sum = Four::load(row) * Four::load(window);
        const std::size_t length = Vectors == 0 ? tables.stride : 4 * Vectors;
        for (std::size_t tap = 4; tap < length; tap += 4) {
            sum = sum + Four::load(row + tap) * Four::load(window + tap);
        }
        advance(tables, position);
        return sum;
    }

    static void advance(const polyphase_tables& tables, polyphase_position& position) {
        const bool carries = position.row < tables.step_rows;
        position.row += (carries ? tables.phases : 0U) - tables.step_rows;
        position.frame += tables.step_frames + (carries ? 1U : 0U);
    }

    /// (lane 0 + lane 1) + (lane 2 + lane 3) of each.
    static Four totals(Four v0, Four v1, Four v2, Four v3) {
        const Four sums01 = even_lanes(v0, v1) + odd_lanes(v0, v1);
        const Four sums23 = even_lanes(v2, v3) + odd_lanes(v2, v3);
        return low_halves(sums01, sums23) + high_halves(sums01, sums23);
    }

    template <std::size_t Vectors>
    static void run_rows(const polyphase_tables& tables, polyphase_position& position, const double* frames,
                         double* out, std::size_t count) {
        polyphase_position now = position; // in registers while the loop runs
        std::size_t done = 0;
        for (; done + 4 <= count; done += 4) {
            const Four v0 = lane_sums<Vectors>(tables, now, frames);
            const Four v1 = lane_sums<Vectors>(tables, now, frames);
            const Four v2 = lane_sums<Vectors>(tables, now, frames);
            const Four v3 = lane_sums<Vectors>(tables, now, frames);
            totals(v0, v1, v2, v3).store(out + done);
        }
        for (; done < count; ++done) {
            const Four v = lane_sums<Vectors>(tables, now, frames);
            out[done] = totals(v, v, v, v).first();
        }
        position = now;
    }
};

} // namespace kelvane::ssrc
