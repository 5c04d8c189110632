// How a settings dialog reports.
#pragma once

namespace velmora {

class effect_preset;

/// Belongs to the caller of the dialog and is borrowed until the dialog has ended.
class preset_change_callback {
public:
    /// The dialog's settings are now those of `preset`, which is borrowed for the call. [main-thread]
    virtual void on_preset_change(const effect_preset* preset) = 0;

protected:
    ~preset_change_callback() = default;
};

} // namespace velmora
