#include "effects/crossfade/sample_ring_core.h"

#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <numeric>
#include <span>
#include <vector>

namespace kelvane {
namespace {

using testing_support::pick;

std::vector<double> as_vector(std::span<const double> samples) {
    return {samples.begin(), samples.end()};
}

TEST(SampleRing, HasNoRoomUntilItGetsSome) {
    const sample_ring ring;
    EXPECT_EQ(ring.capacity(), 0U);
    EXPECT_EQ(ring.fill(), 0U);
    EXPECT_EQ(ring.writable(), 0U);
    EXPECT_TRUE(ring.oldest().empty());
}

TEST(SampleRing, GivesUpTheOldestOnceItIsFull) {
    std::vector<double> storage(4);
    sample_ring ring(storage);
    EXPECT_TRUE(ring.displaced_by(3).empty());
    ring.write(std::vector<double>{1, 2, 3});
    EXPECT_EQ(ring.writable(), 1U); // up to the end of the storage
    EXPECT_TRUE(ring.displaced_by(1).empty());
    ring.write(std::vector<double>{4});
    EXPECT_EQ(ring.fill(), 4U);
    EXPECT_EQ(ring.writable(), 4U); // round again
    EXPECT_EQ(as_vector(ring.displaced_by(3)), (std::vector<double>{1, 2, 3}));
    ring.write(std::vector<double>{5, 6, 7});
    EXPECT_EQ(as_vector(ring.oldest()), (std::vector<double>{4}));
    ring.drop_oldest(1);
    EXPECT_EQ(as_vector(ring.oldest()), (std::vector<double>{5, 6, 7}));
}

TEST(SampleRing, DisplacesOnlyWhatIsThereAfterADrop) {
    std::vector<double> storage(4);
    sample_ring ring(storage);
    ring.write(std::vector<double>{1, 2, 3, 4});
    ring.drop_oldest(2);
    EXPECT_EQ(as_vector(ring.displaced_by(3)), (std::vector<double>{3})); // behind the two that are free
    ring.write(std::vector<double>{5, 6, 7});
    EXPECT_EQ(as_vector(ring.oldest()), (std::vector<double>{4}));
}

TEST(SampleRing, ACopyThatSkipsGoesWhereTheRingWillGo) {
    std::vector<double> storage(4);
    sample_ring ring(storage);
    ring.write(std::vector<double>{1, 2, 3});
    sample_ring later = ring;
    later.skip(1);
    EXPECT_EQ(later.fill(), 4U);
    EXPECT_EQ(later.writable(), 4U);
    EXPECT_EQ(as_vector(later.displaced_by(2)), (std::vector<double>{1, 2}));
    later.skip(2);
    EXPECT_EQ(later.writable(), 2U);
    EXPECT_EQ(storage, (std::vector<double>{1, 2, 3, 0}));
    EXPECT_EQ(ring.fill(), 3U);
    EXPECT_EQ(ring.writable(), 1U);
}

/// Writes all of `samples` in as many pieces as it takes and returns what they displaced.
std::vector<double> push(sample_ring& ring, std::span<const double> samples) {
    std::vector<double> displaced;
    while (!samples.empty()) {
        const auto piece = samples.first(std::min(samples.size(), ring.writable()));
        const auto gone = as_vector(ring.displaced_by(piece.size()));
        displaced.insert(displaced.end(), gone.begin(), gone.end());
        ring.write(piece);
        samples = samples.subspan(piece.size());
    }
    return displaced;
}

std::vector<double> pop(sample_ring& ring, std::size_t count) {
    std::vector<double> dropped;
    while (count > 0) {
        const auto piece = as_vector(ring.oldest().first(std::min(count, ring.oldest().size())));
        dropped.insert(dropped.end(), piece.begin(), piece.end());
        ring.drop_oldest(piece.size());
        count -= piece.size();
    }
    return dropped;
}

std::vector<double> pop(std::deque<double>& queue, std::size_t count) {
    const auto last = queue.begin() + static_cast<std::ptrdiff_t>(count);
    std::vector<double> dropped(queue.begin(), last);
    queue.erase(queue.begin(), last);
    return dropped;
}

TEST(SampleRing, IsAQueueOfLimitedLength) {
    testing_support::random_source random(1);
    for (const std::size_t capacity : {1U, 2U, 3U, 7U, 64U}) {
        std::vector<double> storage(capacity);
        sample_ring ring(storage);
        std::deque<double> queue;
        for (double next = 0.0; next < 5000.0;) {
            std::vector<double> samples(pick(random, 1, 2 * capacity + 1));
            std::iota(samples.begin(), samples.end(), next);
            next += static_cast<double>(samples.size());
            queue.insert(queue.end(), samples.begin(), samples.end());
            const std::size_t too_many = queue.size() - std::min(queue.size(), capacity);
            ASSERT_EQ(push(ring, samples), pop(queue, too_many)) << capacity << ", " << next;
            const std::size_t taken = pick(random, 0, 2) == 0 ? pick(random, 0, queue.size()) : 0;
            ASSERT_EQ(pop(ring, taken), pop(queue, taken)) << capacity << ", " << next;
            ASSERT_EQ(ring.fill(), queue.size());
        }
    }
}

} // namespace
} // namespace kelvane
