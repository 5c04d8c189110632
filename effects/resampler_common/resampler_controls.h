// The controls that the dialogs of both resamplers have (Windows).
#pragma once

#include "effects/resampler_common/rate_entry.h"
#include "frame/dialog_controls.h"

#include <string>

namespace kelvane {

/// The list of target rates, in which any other may be typed.
class rate_list : public combo_box {
public:
    using combo_box::combo_box;

    void offer_rates() const;
    void show(const rate_entry& entry) const;

    /// For the moment in which a rate is selected: the text is still the one before it.
    rate_entry selected() const { return {.selected = selection(), .typed = text()}; }

    /// For any other moment. What is typed into an open list selects the nearest of its rates, which nobody chose.
    rate_entry typed() const { return {.selected = -1, .typed = text()}; }
};

/// "Exclude rates:", a check box, and the line of rates, which can be typed in while it is checked.
class exclusion_controls {
public:
    exclusion_controls(HWND box, HWND line) noexcept : box_(box), line_(line) {}

    void show(bool excludes, const std::string& exclusions) const;
    bool excludes() const { return box_.is_checked(); }
    std::string exclusions() const { return line_.text(); }

    /// After a click on the box.
    void follow_box() const { line_.enable(excludes()); }

private:
    check_box box_;
    edit_box line_;
};

} // namespace kelvane
