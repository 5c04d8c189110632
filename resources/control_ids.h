// The numbers of dialogs and their controls, for the templates and for the code that drives them.
#pragma once

// The resource compiler reads this file too: plain definitions only.

#define DIALOG_CROSSFADER 102
#define DIALOG_CROSSFEED 103

#define CROSSFADER_FADE 1026
#define CROSSFADER_NUMBER 1027

#define CROSSFEED_STRENGTH 1038
#define CROSSFEED_NUMBER 1039

#define DIALOG_SILENCE 101

#define SILENCE_MINIMUM 1028
#define SILENCE_MINIMUM_NUMBER 1029
#define SILENCE_KEEPS_INITIAL 1030
#define SILENCE_THRESHOLD 1032
#define SILENCE_THRESHOLD_NUMBER 1033

#define DIALOG_SINC 104

#define SINC_RATE 1004
#define SINC_QUALITY 1034
#define SINC_DESCRIPTION 1035
#define SINC_EXCLUDE 1036
#define SINC_EXCLUSIONS 1037
