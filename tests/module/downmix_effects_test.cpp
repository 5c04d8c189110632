#include "tests/support/built_module.h"
#include "tests/support/strict_block.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <vector>

namespace {

using testing_support::block_format;
using testing_support::make_effect;
using testing_support::strict_list;

constexpr auto to_stereo = "Downmix channels to stereo";
constexpr auto to_mono = "Downmix channels to mono";

const double w = static_cast<double>(std::bit_cast<float>(0x3F3504F3U)); // the single-precision root of one half

void expect_mixed(const std::string& effect, const std::vector<double>& in, const block_format& format,
                  const std::vector<double>& out) {
    strict_list list;
    list.append(in, format);
    make_effect(effect)->run(&list, nullptr, 0);
    ASSERT_EQ(list.get_count(), 1U);
    EXPECT_EQ(list.at(0).samples(), out) << effect << ", mask " << format.channel_mask;
    const bool is_stereo = effect == to_stereo;
    EXPECT_EQ(list.at(0).format(), (block_format{format.sample_rate_hz, is_stereo ? 2U : 1U, is_stereo ? 0x3U : 0x4U}));
}

void expect_untouched(const std::string& effect, const block_format& format) {
    const std::vector<double> in(std::size_t{2} * format.channels, 0.25);
    strict_list list;
    list.append(in, format);
    make_effect(effect)->run(&list, nullptr, 0);
    ASSERT_EQ(list.get_count(), 1U);
    EXPECT_EQ(list.at(0).changes(), 0) << effect << ", mask " << format.channel_mask;
    EXPECT_EQ(list.at(0).samples(), in);
}

TEST(DownmixToStereo, FoldsSurround) {
    // Powers of two: each sum is exact, so it does not depend on the order of its terms' rounding.
    expect_mixed(to_stereo, {1.0, 2.0, 4.0, 8.0, 16.0, 32.0}, {48000, 6, 0x3F},
                 {1.0 + 4.0 * w + 8.0 + 16.0 * w, 2.0 + 4.0 * w + 8.0 + 32.0 * w});
}

TEST(DownmixToStereo, OneSpeakerInFrontStaysOnItsSide) {
    expect_mixed(to_stereo, {0.75, -0.5}, {44100, 1, 0x1}, {0.75, 0.0, -0.5, 0.0});
    expect_mixed(to_stereo, {0.75, -0.5}, {44100, 1, 0x2}, {0.0, 0.75, 0.0, -0.5});
}

TEST(DownmixToStereo, TheRearPairComesToTheFront) {
    expect_mixed(to_stereo, {1.0, 2.0}, {44100, 2, 0x30}, {w, 2.0 * w});
}

TEST(DownmixToStereo, StereoAndMonoPass) {
    expect_untouched(to_stereo, {44100, 2, 0x3});
    expect_untouched(to_stereo, {44100, 1, 0x4});
    expect_untouched(to_stereo, {44100, 6, 0x3}); // the mask alone decides
    expect_untouched(to_stereo, {44100, 2, 0x4});
}

TEST(DownmixToMono, StereoIsTheMean) {
    expect_mixed(to_mono, {1.0, 0.5, -1.0, 1.0}, {44100, 2, 0x3}, {0.75, 0.0});
}

TEST(DownmixToMono, FoldsSurround) {
    const double h = w / 2.0;
    expect_mixed(to_mono, {1.0, 2.0, 4.0, 8.0, 16.0, 32.0}, {44100, 6, 0x3F},
                 {0.5 + 1.0 + 4.0 * w + 8.0 + 16.0 * h + 32.0 * h});
}

TEST(DownmixToMono, OneSpeakerElsewhereIsWeightedToo) {
    expect_mixed(to_mono, {1.0, -0.5}, {44100, 1, 0x1}, {0.5, -0.25});
    expect_mixed(to_mono, {1.0, -0.5}, {44100, 1, 0x8}, {1.0, -0.5});
    expect_mixed(to_mono, {1.0, -0.5}, {44100, 1, 0x100}, {w, -0.5 * w});
}

TEST(DownmixToMono, MonoPasses) {
    expect_untouched(to_mono, {44100, 1, 0x4});
    expect_untouched(to_mono, {44100, 3, 0x4});
}

TEST(Downmix, StrangeLayoutsPass) {
    for (const auto* const effect : {to_stereo, to_mono}) {
        expect_untouched(effect, {44100, 1, 0x0});
        expect_untouched(effect, {44100, 2, 0x0});
        expect_untouched(effect, {44100, 8, 0x3F});  // six speakers, eight channels
        expect_untouched(effect, {44100, 5, 0x3F});  // and fewer
        expect_untouched(effect, {44100, 9, 0xE3F}); // a top speaker
        expect_untouched(effect, {44100, 1, 0x800});
        expect_untouched(effect, {44100, 32, 0xFFFFFFFF});
        expect_untouched(effect, {44100, 40, 0xFFFFFFFF});
    }
}

} // namespace
