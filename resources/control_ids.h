// The numbers of dialogs and their controls, for the templates and for the code that drives them.
#pragma once

// The resource compiler reads this file too: plain definitions only.

#define DIALOG_CROSSFEED 103

#define CROSSFEED_STRENGTH 1038
#define CROSSFEED_NUMBER 1039

#define DIALOG_SINC 104

#define SINC_RATE 1004
#define SINC_QUALITY 1034
#define SINC_DESCRIPTION 1035
#define SINC_EXCLUDE 1036
#define SINC_EXCLUSIONS 1037
