// The polyphase stage's dot products.
#pragma once

#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>

namespace kelvane::ssrc {

template <class Four>
class polyphase_kernels {
public:
    static void run(const polyphase_tables& tables, polyphase_cursor cursor, const double* frames, double* out,
                    std::size_t count) {
        switch (tables.stride) {
        case 4:
            return run_rows<1>(tables, cursor, frames, out, count);
        case 8:
            return run_rows<2>(tables, cursor, frames, out, count);
        case 12:
            return run_rows<3>(tables, cursor, frames, out, count);
        default:
            return run_rows<0>(tables, cursor, frames, out, count);
        }
    }

private:
    /// The products of one output, summed up in each lane. `Fours` is the length of a row, 0 for any.
    template <std::size_t Fours>
    static Four lane_sums(const polyphase_tables& tables, std::size_t cycle_place, const double* cycle) {
        const std::size_t length = Fours == 0 ? tables.stride : 4 * Fours;
        const double* row = tables.coefficients + length * cycle_place;
        const double* window = cycle + tables.offsets[cycle_place];
        Four sum = Four::load(row) * Four::load(window);
        for (std::size_t tap = 4; tap < length; tap += 4) {
            sum = sum + Four::load(row + tap) * Four::load(window + tap);
        }
        return sum;
    }

    /// (lane 0 + lane 1) + (lane 2 + lane 3) of each.
    static Four totals(Four v0, Four v1, Four v2, Four v3) {
        const Four sums01 = even_lanes(v0, v1) + odd_lanes(v0, v1);
        const Four sums23 = even_lanes(v2, v3) + odd_lanes(v2, v3);
        return low_halves(sums01, sums23) + high_halves(sums01, sums23);
    }

    template <std::size_t Fours>
    static void run_rows(const polyphase_tables& tables, polyphase_cursor cursor, const double* frames, double* out,
                         std::size_t count) {
        std::size_t place = cursor.cycle_place;
        const double* cycle = frames + cursor.cycle_frame;
        std::size_t done = 0;
        for (; done + 4 <= count; done += 4) {
            totals(lane_sums<Fours>(tables, place, cycle), lane_sums<Fours>(tables, place + 1, cycle),
                   lane_sums<Fours>(tables, place + 2, cycle), lane_sums<Fours>(tables, place + 3, cycle))
                .store(out + done);
            place += 4;
            while (place >= tables.cycle_outputs) {
                place -= tables.cycle_outputs;
                cycle += tables.cycle_frames;
            }
        }
        for (; done < count; ++done, ++place) {
            const Four sums = lane_sums<Fours>(tables, place, cycle);
            out[done] = totals(sums, sums, sums, sums).first();
        }
    }
};

} // namespace kelvane::ssrc
