#include "tests/abi/hand_made_audio.h"
#include "tests/abi/hand_made_values.h"
#include "tests/abi/module_under_test.h"
#include "tests/abi/slots.h"

#include <gtest/gtest.h>

namespace abi_test {
namespace {

constexpr auto converter = "{B3BDC598-C578-4662-8288-D177B2155DB2}";
constexpr auto limiter = "{8D7DED25-A094-49BF-810C-863F522D77EF}";

std::vector<void*> layout_factories() {
    std::vector<void*> factories;
    for (raw_record* const record : service_records()) {
        if (*record->class_id == guid(class_id::layout_effect_factory)) {
            factories.push_back(service_of(record));
        }
    }
    return factories;
}

/// An instance whose target is quad.
void* make_for_quad(void* factory, const char* identity) {
    hand_made_preset preset;
    preset.owner = guid(identity);
    preset.payload = {0x33, 0, 0, 0};
    void* instance = nullptr;
    EXPECT_TRUE(call<bool>(factory, layout_factory_slot::instantiate, &instance, &preset));
    return instance;
}

TEST(LayoutSlots, TheLimiterComesBeforeTheConverterAtTheEndOfTheList) {
    const auto factories = layout_factories();
    ASSERT_EQ(factories.size(), 2U);
    guid_bytes identity{};
    call<void>(factories[0], layout_factory_slot::get_identity, &identity);
    EXPECT_EQ(identity, guid(limiter));
    call<void>(factories[1], layout_factory_slot::get_identity, &identity);
    EXPECT_EQ(identity, guid(converter));
    EXPECT_EQ(*service_records().back()->class_id, guid(class_id::layout_effect_factory));
}

TEST(LayoutSlots, TheFactoriesAnswerToTheirClassOnly) {
    const guid_bytes own = guid(class_id::layout_effect_factory);
    for (void* const factory : layout_factories()) {
        void* out = nullptr;
        EXPECT_TRUE(call<bool>(factory, service_slot::query, &out, &own));
        EXPECT_EQ(out, factory);
        for (const auto other : {class_id::effect_factory, class_id::effect_instance, class_id::nobody}) {
            const guid_bytes asked = guid(other);
            EXPECT_FALSE(call<bool>(factory, service_slot::query, &out, &asked)) << other;
        }
    }
}

TEST(LayoutSlots, APresetOfTheOtherEffectIsRefused) {
    hand_made_preset preset;
    preset.owner = guid(limiter);
    void* out = nullptr;
    EXPECT_FALSE(call<bool>(layout_factories()[1], layout_factory_slot::instantiate, &out, &preset));
    EXPECT_EQ(out, nullptr);
}

TEST(LayoutSlots, TheMatrixIsRebuiltThroughTheLastSlot) {
    void* const instance = make_for_quad(layout_factories()[1], converter);
    EXPECT_TRUE(call<bool>(instance, instance_slot::rebuild_matrix)); // for no speakers at all
    hand_made_block block(44'100, {0.5, -1.0});
    hand_made_signal signal;
    EXPECT_TRUE(call<bool>(instance, instance_slot::on_block, &block, &signal));
    EXPECT_EQ(block.channels, 4U);
    EXPECT_EQ(block.channel_mask, 0x33U);
    EXPECT_EQ(block.samples, (std::vector<double>{0.25, 0.25, 0, 0, -0.5, -0.5, 0, 0}));
    EXPECT_TRUE(call<bool>(instance, instance_slot::rebuild_matrix));
    EXPECT_EQ(call<std::uint32_t>(instance, service_slot::release), 0U);
}

} // namespace
} // namespace abi_test
