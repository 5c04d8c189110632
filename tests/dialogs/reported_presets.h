// The host's side of a dialog's callback.
#pragma once

#include "host/objects/preset.h"
#include "velmora/preset_change_callback.h"

#include <vector>

namespace testing_support {

/// Keeps a copy of each preset that a dialog reports.
class reported_presets final : public velmora::preset_change_callback {
public:
    void on_preset_change(const velmora::effect_preset* reported) override {
        host::preset copied;
        velmora::guid owner{};
        copied.set_owner(reported->get_owner(&owner));
        copied.set_data(reported->get_data(), reported->get_data_size());
        presets_.push_back(std::move(copied));
    }

    const std::vector<host::preset>& presets() const noexcept { return presets_; }

private:
    std::vector<host::preset> presets_;
};

} // namespace testing_support
