// A preset that remembers how it was written.
#pragma once

#include "velmora/effect_preset.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace testing_support {

/// Passes everything on to a preset of the type `Preset` and keeps the names of the operations that change one.
template <class Preset>
class recording_preset final : public velmora::effect_preset {
public:
    recording_preset() = default;
    explicit recording_preset(Preset kept) : kept_(std::move(kept)) {}

    velmora::guid* get_owner(velmora::guid* out) const override { return kept_.get_owner(out); }
    void set_owner(const velmora::guid* owner) override {
        writes_.emplace_back("set_owner");
        kept_.set_owner(owner);
    }
    const void* get_data() const override { return kept_.get_data(); }
    std::size_t get_data_size() const override { return kept_.get_data_size(); }
    void set_data(const void* data, std::size_t bytes) override {
        writes_.emplace_back("set_data");
        kept_.set_data(data, bytes);
    }

    const Preset& kept() const noexcept { return kept_; }
    const std::vector<std::string>& writes() const noexcept { return writes_; }

private:
    Preset kept_;
    std::vector<std::string> writes_;
};

} // namespace testing_support
