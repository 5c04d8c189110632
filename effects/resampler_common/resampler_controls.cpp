#include "effects/resampler_common/resampler_controls.h"

namespace kelvane {

void rate_list::offer_rates() const {
    for (const std::uint32_t rate_hz : offered_rates_hz) {
        add(std::to_string(rate_hz));
    }
}

void rate_list::show(const rate_entry& entry) const {
    if (entry.selected >= 0) {
        select(entry.selected);
    } else {
        set_text(entry.typed);
    }
}

void exclusion_controls::show(bool excludes, const std::string& exclusions) const {
    box_.set_checked(excludes);
    line_.set_text(exclusions);
    line_.enable(excludes);
}

} // namespace kelvane
