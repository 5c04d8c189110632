// The module's services, in the order in which they join the list. The order of definitions in one file is the order
// of their initialisation; the host meets them from the last to the first.
#include "effects/channels/downmix_effect.h"
#include "effects/channels/layout_effect.h"
#include "effects/channels/mono_to_stereo.h"
#include "effects/channels/move_stereo_to_rear.h"
#include "effects/channels/reverse_stereo.h"
#include "effects/channels/stereo_to_quad.h"
#include "effects/channels/upmix_effect.h"
#include "effects/crossfade/crossfader_dialog.h"
#include "effects/crossfade/crossfader_effect.h"
#include "effects/crossfeed/crossfeed_dialog.h"
#include "effects/crossfeed/crossfeed_effect.h"
#include "effects/limiters/advanced_limiter_effect.h"
#include "effects/limiters/hard_limiter_effect.h"
#include "effects/resampler_sinc/sinc_dialog.h"
#include "effects/resampler_sinc/sinc_effect.h"
#include "effects/resampler_ssrc/ssrc_dialog.h"
#include "effects/resampler_ssrc/ssrc_effect.h"
#include "effects/silence/silence_dialog.h"
#include "effects/silence/silence_effect.h"
#include "frame/component_version.h"
#include "frame/hidden_effect_factory.h"
#include "frame/plain_effect_factory.h"
#include "frame/resampler_effect_factory.h"
#include "frame/service_list.h"
#include "frame/settings_effect_factory.h"

namespace kelvane {

namespace {

template <class Effect>
using hidden_effect = service_record<hidden_effect_factory<Effect>, velmora::layout_effect_factory>;

template <class Effect>
using plain_effect = service_record<plain_effect_factory<Effect>, velmora::effect_factory>;

template <class Effect, auto show_dialog>
using effect_with_dialog = service_record<settings_effect_factory<Effect, show_dialog>, velmora::effect_factory>;

template <class Effect, auto show_dialog>
using resampler = service_record<resampler_effect_factory<Effect, show_dialog>, velmora::effect_factory>;

hidden_effect<layout_converter> layout_converter_record;
hidden_effect<layout_limiter> layout_limiter_record;
effect_with_dialog<crossfeed_filter, show_crossfeed_dialog> crossfeed_record;
resampler<ssrc_resampler, show_ssrc_dialog> ssrc_resampler_record;
plain_effect<downmix_to_stereo> downmix_to_stereo_record;
plain_effect<downmix_to_mono> downmix_to_mono_record;
resampler<sinc_resampler_effect, show_sinc_dialog> sinc_resampler_record;
plain_effect<upmix_5_1> upmix_5_1_record;
plain_effect<upmix_7_1> upmix_7_1_record;
effect_with_dialog<crossfader_effect, show_crossfader_dialog> crossfader_record;
plain_effect<mono_to_stereo> mono_to_stereo_record;
plain_effect<reverse_stereo> reverse_stereo_record;
plain_effect<stereo_to_quad> stereo_to_quad_record;
plain_effect<move_stereo_to_rear> move_stereo_to_rear_record;
service_record<version_record, velmora::component_version> component_version_record;
service_record<file_name_service, velmora::file_name_check> file_name_check_record;
plain_effect<advanced_limiter> advanced_limiter_record;
plain_effect<hard_limiter> hard_limiter_record;
effect_with_dialog<silence_skipper, show_silence_dialog> silence_record;

} // namespace

} // namespace kelvane
