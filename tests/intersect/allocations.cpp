#include "vxcurvepair_p.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <random>

namespace {

int allocations = 0;

} // namespace

void *operator new(std::size_t size)
{
    ++allocations;
    void *memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

TEST(Allocations, none_for_a_pair_without_meetings)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> coordinate(0, 100);
    int searched = 0;
    int clipped = 0;
    for (int i = 0; i < 4000; ++i) {
        vx::Cubic values[2];
        for (vx::Cubic &c : values) {
            for (double &v : c.v)
                v = coordinate(random);
            if (random() % 3 == 0)
                c = vx::Cubic::fromLine(c.p0(), c.p3());
        }
        QList<vxCurveLocation *> found;
        opParam param;
        const int before = allocations;
        const vx::PreparedCurve a(values[0]);
        const vx::PreparedCurve b(values[1]);
        vx::CurvePair(a, b, nullptr, nullptr, found, param).intersect();
        const int made = allocations - before;
        if (!found.isEmpty()) {
            EXPECT_GT(made, 0) << "the counter counts";
            vxCurveLocation::releaseAll(found);
            continue;
        }
        ASSERT_EQ(made, 0) << "pair " << i;
        ++searched;
        clipped += !a.straight && !b.straight;
    }
    EXPECT_GT(searched, 500);
    EXPECT_GT(clipped, 100);
}
