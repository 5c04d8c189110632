#include "host/audio/quantise.h"

#include <gtest/gtest.h>

#include <limits>

namespace host {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(Quantise, RoundsToTheNearestIntegerAndTiesToTheEvenOne) {
    const struct {
        double in_steps;
        std::int32_t result;
    } cases[]{{0.0, 0},      {0.49, 0},      {0.51, 1},       {0.5, 0},         {1.5, 2},          {2.5, 2},
              {-0.49, 0},    {-0.51, -1},    {-0.5, 0},       {-1.5, -2},       {-2.5, -2},        {999.4, 999},
              {999.6, 1000}, {-999.4, -999}, {-999.6, -1000}, {32766.4, 32766}, {-32767.6, -32768}};
    for (const auto& [in_steps, result] : cases) {
        EXPECT_EQ(quantise(in_steps / 32768.0, 16), result) << in_steps;
        EXPECT_EQ(quantise(in_steps / 8388608.0, 24), result) << in_steps;
        EXPECT_EQ(quantise(in_steps / 2147483648.0, 32), result) << in_steps;
    }
}

TEST(Quantise, ClipsAtFullScale) {
    for (const double loud : {1.0, 1.0000001, 2.0, 65536.0, 1e300, infinity}) {
        EXPECT_EQ(quantise(loud, 16), 32767) << loud;
        EXPECT_EQ(quantise(loud, 24), 8388607) << loud;
        EXPECT_EQ(quantise(loud, 32), 2147483647) << loud;
        EXPECT_EQ(quantise(-loud, 16), -32768) << loud;
        EXPECT_EQ(quantise(-loud, 24), -8388608) << loud;
        EXPECT_EQ(quantise(-loud, 32), std::numeric_limits<std::int32_t>::min()) << loud;
    }
}

TEST(Quantise, WhatIsNoNumberIsSilence) {
    EXPECT_EQ(quantise(std::numeric_limits<double>::quiet_NaN(), 16), 0);
    EXPECT_EQ(quantise(-std::numeric_limits<double>::quiet_NaN(), 32), 0);
}

TEST(Quantise, Every16BitSampleComesBack) {
    for (std::int32_t sample = -32768; sample <= 32767; ++sample) {
        EXPECT_EQ(quantise(sample / 32768.0, 16), sample);
    }
}

} // namespace
} // namespace host
