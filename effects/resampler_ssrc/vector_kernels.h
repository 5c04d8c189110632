// The inner loops of the converter, once for each width of the processor's vectors.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvane::ssrc {

constexpr std::size_t leaf_points = 16;     ///< complex, of a right-angle transform's leaf
constexpr std::size_t numbers_per_node = 6; ///< in its tables
constexpr std::size_t numbers_per_leaf = 30;

/// What a right-angle transform of `points` complex points needs to know. Each node of its tree of factors (see
/// right_angle_fft.h) has w, w^2 and w^3 as pairs of numbers.
struct transform_tables {
    std::size_t points;         ///< a power of two, at least 32
    bool opens_with_two;        ///< the root has two children (odd exponent), else four
    const double* opening;      ///< of the root: w alone for two children
    const double* const* inner; ///< level by level, 6 numbers per node
    const double* leaves;       ///< per leaf of 16 points: 6 numbers, then 6 rows of 4, a column per child
};

/// A polyphase filter in the order in which its outputs need it, step by step. A step makes one output from a row of
/// coefficients, or four from as many quadruples of them; it reads `taps` frames from `offsets` of its place on. The
/// places repeat in cycles.
struct polyphase_tables {
    const double* coefficients;
    const std::uint32_t* offsets;
    std::size_t taps; ///< in a row a multiple of 4, in quadruples at least 2
    std::size_t cycle_places;
    std::size_t cycle_frames;
};

/// Where a step is: its place in a cycle, and the frame at which that cycle begins.
struct polyphase_cursor {
    std::size_t place;
    std::ptrdiff_t cycle_frame;
};

/// A block of a partitioned convolution, for one channel (block_convolver.h).
struct convolution {
    static constexpr std::size_t most_inputs = 3;
    static constexpr std::size_t most_outputs = 3;
    static constexpr std::size_t most_parts = 2;

    std::size_t inputs;
    std::size_t outputs;
    std::size_t parts;
    const double* older[most_inputs]; ///< the block before
    const double* newer[most_inputs]; ///< this block
    double* spectra[most_inputs];     ///< room for their spectra
    const double* filters[most_inputs][most_outputs][most_parts];
    double* gathered[most_outputs][most_parts]; ///< sums of products, this block's first
    double* results[most_outputs];
};

/// The loops of one width. Spectra are in the transform's own order, in blocks of four real parts and then their four
/// imaginary ones. Every width does the same arithmetic in the same order and so gives the same bits.
struct vector_kernels {
    const char* name;

    /// The spectrum of the complex signal re + i im.
    void (*forward)(const transform_tables&, const double* re, const double* im, double* spectrum);
    /// `points` times the signal of a spectrum, which is used up.
    void (*backward)(const transform_tables&, double* spectrum, double* re, double* im);
    /// Transforms the inputs, adds their products with the filters to what is gathered (the last part begins anew) and
    /// transforms this block's sums back. Channels done together share the filters and tables in the cache.
    void (*convolve)(const transform_tables&, const convolution* channels, std::size_t count);

    /// Lets the values of 1 to 3 streams take turns, and the reverse. `values` of each, a multiple of 4.
    void (*interleave)(const double* const* from, std::size_t streams, double* to, std::size_t values);
    void (*deinterleave)(const double* from, double* const* to, std::size_t streams, std::size_t values);

    /// Computes `count` outputs from the cursor's on, one a step or (a multiple of 4 in all) four a step.
    void (*polyphase)(const polyphase_tables&, polyphase_cursor, const double* frames, double* out, std::size_t count);
    void (*polyphase_by_four)(const polyphase_tables&, polyphase_cursor, const double* frames, double* out,
                              std::size_t count);
};

const vector_kernels& sse2_kernels() noexcept;
const vector_kernels& avx2_kernels() noexcept; ///< only for a processor that has AVX2

/// Those of the widest vectors that this processor has.
const vector_kernels& best_kernels() noexcept;

} // namespace kelvane::ssrc
