#include "frame/preset.h"

#include "frame/edit_settings.h"
#include "frame/exceptions.h"
#include "frame/services.h"
#include "tests/support/recording_preset.h"
#include "tests/support/thrown_text.h"
#include "velmora/preset_change_callback.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {
namespace {

constexpr velmora::guid first_owner{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
constexpr velmora::guid second_owner{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 12}};

preset make(const velmora::guid& owner, std::string_view payload) {
    preset made;
    made.set_owner(&owner);
    made.set_data(payload.data(), payload.size());
    return made;
}

TEST(Preset, IsEqualWhenOwnerSizeAndBytesAre) {
    const preset original = make(first_owner, "abc");
    EXPECT_TRUE(are_equal(original, make(first_owner, "abc")));
    EXPECT_FALSE(are_equal(original, make(second_owner, "abc")));
    EXPECT_FALSE(are_equal(original, make(first_owner, "ab")));
    EXPECT_FALSE(are_equal(original, make(first_owner, "abd")));
    EXPECT_TRUE(are_equal(make(first_owner, ""), make(first_owner, "")));
}

TEST(Preset, TheOwnerIsWrittenWhereTheCallerSaysAndThatIsTheAnswer) {
    velmora::guid out{};
    EXPECT_EQ(make(first_owner, "").get_owner(&out), &out);
    EXPECT_EQ(out, first_owner);
}

TEST(Preset, ACopyIsItsOwn) {
    preset original = make(first_owner, "abc");
    const preset copy(original);
    original.set_data("xyz", 3);
    EXPECT_TRUE(are_equal(copy, make(first_owner, "abc")));
}

/// A preset of the host that claims bytes and has none.
class hollow_preset final : public velmora::effect_preset {
public:
    velmora::guid* get_owner(velmora::guid* out) const override { return &(*out = first_owner); }
    void set_owner(const velmora::guid*) override {}
    const void* get_data() const override { return nullptr; }
    std::size_t get_data_size() const override { return 4; }
    void set_data(const void*, std::size_t) override {}
};

TEST(Preset, WithoutItsBytesIsEmpty) {
    const hollow_preset hollow;
    EXPECT_TRUE(payload_of(hollow).empty());
    EXPECT_TRUE(are_equal(hollow, make(first_owner, "")));
    EXPECT_FALSE(are_equal(hollow, make(first_owner, "abcd")));
    EXPECT_TRUE(are_equal(preset(hollow), make(first_owner, "")));
}

TEST(Preset, AnImpossibleSizeIsSaidAndChangesNothing) {
    preset edited = make(first_owner, "abc");
    const std::size_t impossible = std::numeric_limits<std::size_t>::max() / 2 + 1;
    EXPECT_EQ(testing_support::thrown_text<std::bad_alloc>([&] { edited.set_data("", impossible); }),
              "bad array new length");
    EXPECT_TRUE(are_equal(edited, make(first_owner, "abc")));
}

/// A factory whose dialog does what the test says.
class dialog_factory final : public static_service<velmora::effect_factory_with_dialog, velmora::effect_factory> {
public:
    using dialog = std::function<void(const velmora::effect_preset&, velmora::preset_change_callback&)>;

    explicit dialog_factory(dialog shown) : shown_(std::move(shown)) {}

    void get_name(velmora::string_receiver*) override {}
    void get_default_preset(velmora::effect_preset*) override {}
    bool instantiate(velmora::effect_instance**, const velmora::effect_preset*) override { return false; }
    void get_identity(velmora::guid*) override {}
    bool has_settings_dialog() override { return true; }
    bool edit_settings(velmora::effect_preset* edited, void* parent) override {
        return edit_settings_by_dialog(*this, *edited, parent);
    }
    void show_settings_dialog(const velmora::effect_preset* opening, void* parent,
                              velmora::preset_change_callback* callback) override {
        last_parent = parent;
        shown_(*opening, *callback);
    }

    void* last_parent = nullptr;

private:
    dialog shown_;
};

TEST(EditSettings, ADialogThatReportsNothingChangesNothing) {
    dialog_factory factory([](auto&, auto&) {});
    preset edited = make(first_owner, "abc");
    int window = 0;
    EXPECT_FALSE(factory.edit_settings(&edited, &window));
    EXPECT_EQ(factory.last_parent, &window);
    EXPECT_TRUE(are_equal(edited, make(first_owner, "abc")));
}

TEST(EditSettings, TheSameOwnerAndBytesAreNoChange) {
    dialog_factory factory([](auto& opening, auto& callback) {
        const preset live = make(second_owner, "live");
        callback.on_preset_change(&live);
        callback.on_preset_change(&opening); // cancelled: the opening preset again
    });
    preset edited = make(first_owner, "abc");
    EXPECT_FALSE(factory.edit_settings(&edited, nullptr));
    EXPECT_TRUE(are_equal(edited, make(first_owner, "abc")));
}

TEST(EditSettings, TheLastReportWins) {
    dialog_factory factory([](auto&, auto& callback) {
        for (const std::string_view payload : {"one", "two"}) {
            const preset reported = make(second_owner, payload);
            callback.on_preset_change(&reported);
        }
    });
    preset edited = make(first_owner, "abc");
    EXPECT_TRUE(factory.edit_settings(&edited, nullptr));
    EXPECT_TRUE(are_equal(edited, make(second_owner, "two")));
}

TEST(EditSettings, TheOwnerIsWrittenFirst) {
    dialog_factory factory([](auto&, auto& callback) {
        const preset reported = make(second_owner, "two");
        callback.on_preset_change(&reported);
    });
    testing_support::recording_preset edited(make(first_owner, "abc"));
    EXPECT_TRUE(factory.edit_settings(&edited, nullptr));
    EXPECT_EQ(edited.writes(), (std::vector<std::string>{"set_owner", "set_data"}));
    EXPECT_TRUE(are_equal(edited, make(second_owner, "two")));
}

TEST(EditSettings, AnExceptionOfTheDialogLeavesThePreset) {
    dialog_factory factory([](auto&, auto& callback) {
        const preset reported = make(second_owner, "one");
        callback.on_preset_change(&reported);
        throw mox::exception_not_implemented();
    });
    preset edited = make(first_owner, "abc");
    EXPECT_EQ(testing_support::thrown_text<std::exception>([&] { factory.edit_settings(&edited, nullptr); }),
              "Feature not implemented");
    EXPECT_TRUE(are_equal(edited, make(first_owner, "abc")));
}

TEST(EditSettings, AFactoryWithADialogAnswersToBothItsInterfaces) {
    dialog_factory factory([](auto&, auto&) {});
    for (const auto& asked : {velmora::effect_factory::class_id, velmora::effect_factory_with_dialog::class_id}) {
        velmora::service* out = nullptr;
        EXPECT_TRUE(factory.query(&out, &asked));
        EXPECT_EQ(out, &factory);
    }
}

} // namespace
} // namespace kelvane
