// One step of a chain as a person writes it.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace host {

/// What `-e` takes: an effect, and its settings behind the first colon.
struct step_text {
    std::string effect;
    std::string settings; ///< "field=value,field=value"; empty for the defaults
};

/// "Meier Crossfeed:strength=1500" is the effect "Meier Crossfeed" with the settings "strength=1500".
step_text split_step(std::string_view text);

} // namespace host
