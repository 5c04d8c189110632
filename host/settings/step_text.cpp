#include "host/settings/step_text.h"

namespace host {

step_text split_step(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return {std::string(text), ""};
    }
    return {std::string(text.substr(0, colon)), std::string(text.substr(colon + 1))};
}

} // namespace host
