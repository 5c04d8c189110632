#include "effects/effect_settings.h"

#include "effects/channels/layout_words.h"
#include "effects/crossfade/crossfader_words.h"
#include "effects/crossfeed/crossfeed_words.h"
#include "effects/resampler_sinc/sinc_words.h"
#include "effects/resampler_ssrc/ssrc_words.h"
#include "effects/silence/silence_words.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace kelvane {

const settings_words* find_settings_words(const velmora::guid& effect) {
    static const auto all = [] {
        std::vector<std::unique_ptr<settings_words>> made;
        made.push_back(layout_converter_words());
        made.push_back(layout_limiter_words());
        made.push_back(crossfader_words());
        made.push_back(crossfeed_words());
        made.push_back(sinc_words());
        made.push_back(ssrc_words());
        made.push_back(silence_words());
        return made;
    }();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const auto& words) { return words->effect() == effect; });
    return found == all.end() ? nullptr : found->get();
}

} // namespace kelvane
