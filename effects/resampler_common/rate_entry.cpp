#include "effects/resampler_common/rate_entry.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace kelvane {

namespace {

bool is_selected(const rate_entry& entry) {
    return entry.selected >= 0 && entry.selected < static_cast<int>(offered_rates_hz.size());
}

long long entered_hz(const rate_entry& entry) {
    return is_selected(entry) ? offered_rates_hz[static_cast<std::size_t>(entry.selected)]
                              : std::strtoll(entry.typed.c_str(), nullptr, 10); // 0 for what is no number
}

} // namespace

rate_entry show_rate(std::uint32_t rate_hz) {
    const auto offered = std::find(offered_rates_hz.begin(), offered_rates_hz.end(), rate_hz);
    if (offered == offered_rates_hz.end()) {
        return {.selected = -1, .typed = std::to_string(rate_hz)};
    }
    return {.selected = static_cast<int>(offered - offered_rates_hz.begin()), .typed = {}};
}

std::uint32_t read_rate(const rate_entry& entry, const rate_limits& limits) {
    return static_cast<std::uint32_t>(std::clamp<long long>(entered_hz(entry), limits.lowest_hz, limits.highest_hz));
}

} // namespace kelvane
