#include "frame/effect_base.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <numeric>
#include <thread>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#include <sched.h>
#endif

namespace kelvane {
namespace {

/// Tells of its end.
class mortal_effect final : public effect_base {
public:
    explicit mortal_effect(bool& has_ended) : has_ended_(has_ended) {}
    ~mortal_effect() override { has_ended_ = true; }
    bool on_block(velmora::sample_block*, velmora::abort_signal*) override { return true; }

private:
    bool& has_ended_;
};

TEST(EffectCounting, StartsAtNothingAndEndsWithTheLastReference) {
    bool has_ended = false;
    auto* const effect = new mortal_effect(has_ended);
    EXPECT_EQ(effect->add_ref(), 1U);
    EXPECT_EQ(effect->add_ref(), 2U);
    EXPECT_EQ(effect->release(), 1U);
    EXPECT_FALSE(has_ended);
    EXPECT_EQ(effect->release(), 0U);
    EXPECT_TRUE(has_ended);
}

/// Keeps the thread on one of two processors: a busy machine else runs all threads of a test in turn on one of them.
/// Where that is not to be had, the test only finds less.
void stay_on_processor(unsigned number) {
#ifdef _WIN32
    SetThreadAffinityMask(GetCurrentThread(), DWORD_PTR{1} << number % 2);
#else
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(number % 2, &processors);
    pthread_setaffinity_np(pthread_self(), sizeof processors, &processors);
#endif
}

/// Threads that count one effect at the same time.
class counting_race {
public:
    explicit counting_race(velmora::service& counted) : counted_(counted) {}

    /// Each counts up as often as it can in a while. Returns how often that was in all.
    std::uint32_t count_up() {
        std::atomic<bool> is_over = false;
        auto threads = start([&](std::uint32_t taken) {
            for (; !is_over; ++taken) {
                counted_.add_ref();
            }
            return taken;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        is_over = true;
        join(threads);
        return std::accumulate(taken_.begin(), taken_.end(), std::uint32_t{0});
    }

    /// Each counts down as often as it has counted up.
    void count_down() {
        auto threads = start([&](std::uint32_t taken) {
            for (; taken != 0; --taken) {
                counted_.release();
            }
            return taken;
        });
        join(threads);
    }

private:
    template <class Count>
    std::vector<std::thread> start(Count count) {
        std::vector<std::thread> threads;
        for (unsigned number = 0; number < taken_.size(); ++number) {
            threads.emplace_back([this, count, number] {
                stay_on_processor(number);
                taken_[number] = count(taken_[number]);
            });
        }
        return threads;
    }

    static void join(std::vector<std::thread>& threads) {
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    velmora::service& counted_;
    std::array<std::uint32_t, 4> taken_{}; ///< references that each thread holds
};

/// All count up, then all count down: a count that is lost is not made up for by another.
TEST(EffectCounting, SeveralThreadsLoseNoCount) {
    bool has_ended = false;
    auto* const effect = new mortal_effect(has_ended);
    counting_race threads(*effect);
    const std::uint32_t taken = threads.count_up();
    ASSERT_EQ(effect->add_ref(), taken + 1); // counts that are missing would end it too early
    threads.count_down();
    EXPECT_FALSE(has_ended);
    EXPECT_EQ(effect->release(), 0U);
    EXPECT_TRUE(has_ended);
}

} // namespace
} // namespace kelvane
