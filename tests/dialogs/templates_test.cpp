// The dialogs' templates, without the code that fills them.
#include "resources/control_ids.h"
#include "tests/dialogs/person.h"
#include "tests/support/built_module.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <memory>
#include <string>

namespace {

using namespace testing_support;
using window = std::unique_ptr<HWND__, decltype(&DestroyWindow)>;

constexpr int all_templates[] = {DIALOG_SILENCE, DIALOG_CROSSFADER, DIALOG_CROSSFEED, DIALOG_SSRC, DIALOG_SINC};

INT_PTR CALLBACK do_nothing(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

/// An invisible dialog.
window made_from(int template_id, HWND parent = nullptr) {
    const INITCOMMONCONTROLSEX bars{sizeof(INITCOMMONCONTROLSEX), ICC_BAR_CLASSES};
    InitCommonControlsEx(&bars);
    built_module();
    return {CreateDialogParamW(GetModuleHandleW(L"kelvane.dll"), MAKEINTRESOURCEW(template_id), parent, do_nothing, 0),
            &DestroyWindow};
}

TEST(Templates, HaveTheirSizes) {
    struct row {
        int template_id;
        LONG width_units;
        LONG height_units;
    };
    for (const row& line : {row{DIALOG_CROSSFEED, 311, 90}, row{DIALOG_SILENCE, 328, 155}}) {
        const window dialog = made_from(line.template_id);
        RECT wanted{0, 0, line.width_units, line.height_units};
        MapDialogRect(dialog.get(), &wanted);
        RECT client{};
        GetClientRect(dialog.get(), &client);
        EXPECT_EQ(client.right, wanted.right) << line.template_id;
        EXPECT_EQ(client.bottom, wanted.bottom) << line.template_id;
    }
}

int pixels_of_points(int points) {
    const HDC screen = GetDC(nullptr);
    const int pixels = MulDiv(points, GetDeviceCaps(screen, LOGPIXELSY), 72);
    ReleaseDC(nullptr, screen);
    return pixels;
}

TEST(Templates, AreInTheSystemsDialogFont) {
    for (const int template_id : all_templates) {
        const window dialog = made_from(template_id);
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(dialog.get(), WM_GETFONT, 0, 0)), sizeof font, &font);
        EXPECT_EQ(std::wstring(font.lfFaceName), L"MS Shell Dlg") << template_id;
        EXPECT_EQ(font.lfHeight, -pixels_of_points(8)) << template_id;
    }
}

/// A screen reader calls a control without a text of its own by the one before it.
TEST(Templates, TrackbarsAreHorizontalWithoutTicksBehindTheirCaptions) {
    struct row {
        int template_id;
        int trackbar;
        const wchar_t* caption;
    };
    const row table[] = {
        {DIALOG_CROSSFEED, CROSSFEED_STRENGTH, L"Crossfeed strength"},
        {DIALOG_CROSSFADER, CROSSFADER_FADE, L"Fade duration:"},
        {DIALOG_SILENCE, SILENCE_MINIMUM, L"Minimum silence duration to activate removal:"},
        {DIALOG_SILENCE, SILENCE_THRESHOLD, L"Silence detection threshold:"},
    };
    for (const row& line : table) {
        const window dialog = made_from(line.template_id);
        const HWND trackbar = GetDlgItem(dialog.get(), line.trackbar);
        EXPECT_EQ(GetWindowLongW(trackbar, GWL_STYLE) & (TBS_NOTICKS | TBS_VERT), TBS_NOTICKS) << line.trackbar;
        EXPECT_EQ(text_of(GetWindow(trackbar, GW_HWNDPREV)), line.caption) << line.trackbar;
    }
}

TEST(Templates, TheStrengthHasAPlaceholder) {
    EXPECT_EQ(text_in(made_from(DIALOG_CROSSFEED).get(), CROSSFEED_NUMBER), L"<number>");
}

POINT middle_of_working_area() {
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return middle_of(area);
}

TEST(Templates, OpenInTheMiddleOfTheScreenWithAParentOrNone) {
    const window parent(
        CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 5, 5, 90, 60, nullptr, nullptr, nullptr, nullptr),
        &DestroyWindow);
    const POINT wanted = middle_of_working_area();
    for (const int template_id : all_templates) {
        for (const HWND over : {HWND{}, parent.get()}) {
            RECT placed{};
            GetWindowRect(made_from(template_id, over).get(), &placed);
            EXPECT_NEAR(middle_of(placed).x, wanted.x, 1) << template_id << (over ? ", parent" : "");
            EXPECT_NEAR(middle_of(placed).y, wanted.y, 1) << template_id << (over ? ", parent" : "");
        }
    }
}

} // namespace
