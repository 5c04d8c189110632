// How a signal goes on behind its end, guessed by linear prediction.
#pragma once

#include <cstddef>
#include <span>

namespace kelvane {

/// Coefficients of the predictor.
inline constexpr std::size_t lpc_order = 32;

/// The shortest history that it is worth predicting from, in samples.
inline constexpr std::size_t min_lpc_history_samples = 2 * lpc_order + 1;

/// Fills `continuation` with what the last samples of `history` let expect, one channel. `history` holds at least
/// `min_lpc_history_samples`; the two do not overlap.
///
/// Each new sample is the negated sum of the 32 before it, weighted by the coefficients that predict the history best
/// (autocorrelation method; the recursion of N. Levinson, "The Wiener RMS Error Criterion in Filter Design and
/// Prediction", Journal of Mathematics and Physics, 1947, and J. Durbin, "The Fitting of Time-Series Models", Review of
/// the International Statistical Institute, 1960). The coefficients are scaled by falling powers of 0.99, which moves
/// the poles inwards: what is generated dies away and never grows. See J. Makhoul, "Linear Prediction: A Tutorial
/// Review", Proceedings of the IEEE, 1975.
///
/// Sums are 64-bit: those over the history run from its oldest sample to its newest, that of a new sample from the
/// newest of the 32 before it back. Coefficients and generated samples are 32-bit. These last bits are part of the
/// sound. A history of silence gives silence, one with a sample that is not a number, or infinite, may give others.
void extrapolate(std::span<const float> history, std::span<float> continuation) noexcept;

} // namespace kelvane
