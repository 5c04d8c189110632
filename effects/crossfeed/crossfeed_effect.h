// "Meier Crossfeed".
#pragma once

#include "effects/crossfeed/crossfeed_core.h"
#include "effects/crossfeed/crossfeed_settings.h"
#include "frame/effect_base.h"

#include <optional>
#include <string_view>

namespace kelvane {

/// Filters blocks of two channels, whatever their mask, in place; others pass and reset the filter. The filter runs
/// across blocks and tracks; a new rate starts it anew.
class crossfeed_filter final : public effect_base {
public:
    using settings = crossfeed_settings;
    static constexpr std::string_view display_name = "Meier Crossfeed";

    explicit crossfeed_filter(const crossfeed_settings& chosen) noexcept : strength_(chosen.strength) {}

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override;
    void flush() override;

private:
    void follow_rate(std::uint32_t rate_hz);

    std::int32_t strength_;
    std::uint32_t rate_hz_ = 0; ///< 0 before the first stereo block
    std::optional<crossfeed_core> core_;
};

} // namespace kelvane
