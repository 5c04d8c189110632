// The numbers of dialogs and their controls, for the templates and for the code that drives them.
#pragma once

// The resource compiler reads this file too: plain definitions only.

#define DIALOG_CROSSFADER 102
#define DIALOG_CROSSFEED 103

#define CROSSFADER_FADE 1026
#define CROSSFADER_NUMBER 1027

#define CROSSFEED_STRENGTH 1038
#define CROSSFEED_NUMBER 1039
