// The numbers of dialogs and their controls, for the templates and for the code that drives them.
#pragma once

// The resource compiler reads this file too: plain definitions only.

#define DIALOG_SILENCE 101
#define DIALOG_CROSSFADER 102
#define DIALOG_CROSSFEED 103
#define DIALOG_SSRC 104
#define DIALOG_SINC 105

#define CROSSFADER_FADE 1026
#define CROSSFADER_NUMBER 1027

#define CROSSFEED_STRENGTH 1038
#define CROSSFEED_NUMBER 1039

#define SILENCE_MINIMUM 1028
#define SILENCE_MINIMUM_NUMBER 1029
#define SILENCE_KEEPS_INITIAL 1030
#define SILENCE_THRESHOLD 1032
#define SILENCE_THRESHOLD_NUMBER 1033

// In the dialogs of both resamplers.
#define RESAMPLER_RATE 1004
#define RESAMPLER_EXCLUDE 1036
#define RESAMPLER_EXCLUSIONS 1037

#define SINC_QUALITY 1034
#define SINC_DESCRIPTION 1035
