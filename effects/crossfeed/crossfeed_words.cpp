#include "effects/crossfeed/crossfeed_words.h"

#include "effects/crossfeed/crossfeed_settings.h"

namespace kelvane {

std::unique_ptr<settings_words> crossfeed_words() {
    using words = struct_words<crossfeed_settings>;
    return std::make_unique<words>(std::vector{
        number_field({.name = "strength",
                      .unit = "",
                      .range = "a whole number of 32 bits (100 to 10000 in the dialog)",
                      .meaning = "how much of the difference of left and right comes back"},
                     &crossfeed_settings::strength),
    });
}

} // namespace kelvane
