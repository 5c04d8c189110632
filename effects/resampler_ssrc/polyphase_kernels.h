// The polyphase stage's sums of products.
#pragma once

#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>

namespace kelvane::ssrc {

template <class Four>
class polyphase_kernels {
public:
    /// The lanes are taps of one output.
    static void run(const polyphase_tables& tables, polyphase_cursor cursor, const double* frames, double* out,
                    std::size_t count) {
        walker at(tables, cursor, frames);
        std::size_t done = 0;
        for (; done + 4 <= count; done += 4) {
            const row r0 = next_row(at);
            const row r1 = next_row(at);
            const row r2 = next_row(at);
            const row r3 = next_row(at);
            Four v0 = r0.products(0);
            Four v1 = r1.products(0);
            Four v2 = r2.products(0);
            Four v3 = r3.products(0);
            for (std::size_t tap = 4; tap < tables.taps; tap += 4) {
                v0 = v0 + r0.products(tap);
                v1 = v1 + r1.products(tap);
                v2 = v2 + r2.products(tap);
                v3 = v3 + r3.products(tap);
            }
            totals(v0, v1, v2, v3).store(out + done);
        }
        for (; done < count; ++done) {
            const row last = next_row(at);
            Four sums = last.products(0);
            for (std::size_t tap = 4; tap < tables.taps; tap += 4) {
                sums = sums + last.products(tap);
            }
            out[done] = totals(sums, sums, sums, sums).first();
        }
    }

    /// The lanes are neighbouring outputs, which share a window of frames.
    static void run_by_four(const polyphase_tables& tables, polyphase_cursor cursor, const double* frames, double* out,
                            std::size_t count) {
        switch (tables.taps) { // lengths that the common rates have
        case 6:
            return run_windows<6>(tables, cursor, frames, out, count);
        case 9:
            return run_windows<9>(tables, cursor, frames, out, count);
        case 11:
            return run_windows<11>(tables, cursor, frames, out, count);
        case 13:
            return run_windows<13>(tables, cursor, frames, out, count);
        case 26:
            return run_windows<26>(tables, cursor, frames, out, count);
        default:
            return run_windows<0>(tables, cursor, frames, out, count);
        }
    }

private:
    /// Goes from place to place.
    struct walker {
        const polyphase_tables tables; // in registers while the loop runs
        std::size_t place;
        const double* frames;
        std::ptrdiff_t cycle_frame; ///< negative where the frames begin within the cycle

        walker(const polyphase_tables& all, polyphase_cursor cursor, const double* first_frame)
            : tables(all), place(cursor.place), frames(first_frame), cycle_frame(cursor.cycle_frame) {}

        const double* window() const {
            return frames + (cycle_frame + static_cast<std::ptrdiff_t>(tables.offsets[place]));
        }
        void step() {
            if (++place == tables.cycle_places) {
                place = 0;
                cycle_frame += static_cast<std::ptrdiff_t>(tables.cycle_frames);
            }
        }
    };

    /// `Taps` is the length of a window, 0 for any.
    template <std::size_t Taps>
    static void run_windows(const polyphase_tables& tables, polyphase_cursor cursor, const double* frames, double* out,
                            std::size_t count) {
        walker at(tables, cursor, frames);
        const std::size_t length = Taps == 0 ? tables.taps : Taps;
        for (std::size_t done = 0; done < count; done += 4) {
            const double* taps = at.tables.coefficients + 4 * length * at.place;
            const double* window = at.window();
            Four even = Four::load(taps) * Four::all(window[0]);
            Four odd = Four::load(taps + 4) * Four::all(window[1]);
            for (std::size_t tap = 2; tap + 1 < length; tap += 2) {
                even = even + Four::load(taps + 4 * tap) * Four::all(window[tap]);
                odd = odd + Four::load(taps + 4 * tap + 4) * Four::all(window[tap + 1]);
            }
            if (length % 2 != 0) {
                even = even + Four::load(taps + 4 * (length - 1)) * Four::all(window[length - 1]);
            }
            (even + odd).store(out + done);
            at.step();
        }
    }

    /// The coefficients of one output and the frames that they meet.
    struct row {
        const double* taps;
        const double* window;

        Four products(std::size_t tap) const { return Four::load(taps + tap) * Four::load(window + tap); }
    };

    static row next_row(walker& at) {
        const row next{at.tables.coefficients + at.tables.taps * at.place, at.window()};
        at.step();
        return next;
    }

    /// (lane 0 + lane 1) + (lane 2 + lane 3) of each.
    static Four totals(Four v0, Four v1, Four v2, Four v3) {
        const Four sums01 = even_lanes(v0, v1) + odd_lanes(v0, v1);
        const Four sums23 = even_lanes(v2, v3) + odd_lanes(v2, v3);
        return low_halves(sums01, sums23) + high_halves(sums01, sums23);
    }
};

} // namespace kelvane::ssrc
