// A list that somebody watches.
#pragma once

#include "tests/support/strict_block.h"

#include <functional>
#include <string_view>

namespace testing_support {

/// Passes every call on to the list within, behind a function that hears the call's name first: it may throw, or call
/// the effect that calls the list.
class observed_list final : public velmora::block_list {
public:
    std::size_t get_count() override { return observed("get_count").get_count(); }
    velmora::sample_block* get_item(std::size_t index) override { return observed("get_item").get_item(index); }
    void remove_item(std::size_t index) override { observed("remove_item").remove_item(index); }
    void remove_all() override { observed("remove_all").remove_all(); }
    velmora::sample_block* insert_item(std::size_t index, std::size_t samples_hint) override {
        return observed("insert_item").insert_item(index, samples_hint);
    }

    std::function<void(std::string_view call)> before_call;
    strict_list blocks;

private:
    strict_list& observed(std::string_view call) {
        before_call(call);
        return blocks;
    }
};

} // namespace testing_support
