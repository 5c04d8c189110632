// The module's converters for the benchmarks.
#pragma once

#include "bench/measure/converters.h"

#include <vector>

namespace bench {

/// The bare windowed-sinc converter at each of its levels, by their names: what is timed.
std::vector<converter_kind> sinc_cores();

/// Both converters as their effects run them: the windowed-sinc converter with what it holds back, at each level, and
/// the FFT converter.
std::vector<converter_kind> module_converters();

} // namespace bench
