#include "meetings.h"

#include "vxinsertionlist_p.h"
#include "vxmatrix.h"

#include <cmath>
#include <numeric>
#include <random>
#include <vector>

using namespace meetings;
using shapes::ellipse;
using shapes::read;
using shapes::rectangle;

namespace {

vxCurve *curveOf(const shapes::XPathPtr &path, int index)
{
    return path->getFirstChild()->getCurves().at(index);
}

} // namespace

TEST(Locations, at_the_end_of_a_curve_belong_to_the_next_one)
{
    const shapes::XPathPtr open = read("M 0 0 L 10 0 L 10 10");
    const shapes::XPathPtr closed = read(rectangle(0, 0, 10, 10));
    const auto expect = [](const shapes::XPathPtr &path, int index, double time, int newIndex,
                           double newTime) {
        const vxRef<vxCurveLocation> location = locationAt(curveOf(path, index), time);
        EXPECT_EQ(location->getCurve(), curveOf(path, newIndex)) << index << " + " << time;
        EXPECT_EQ(location->getTime(), newTime) << index << " + " << time;
    };
    expect(open, 0, 0.99999995, 1, 0);
    expect(open, 0, 0.9999996, 0, 0.9999996);
    expect(open, 1, 0.99999995, 1, 0.99999995);
    expect(closed, 3, 1, 0, 0);
}

TEST(Locations, are_equal_across_the_closing_point_and_with_equal_partners)
{
    const shapes::XPathPtr closed = read(rectangle(0, 0, 10, 10));
    const shapes::XPathPtr other = read(rectangle(0, 0, 10, 10));
    const vxRef<vxCurveLocation> start = locationAt(curveOf(closed, 0), 0);
    const vxRef<vxCurveLocation> end = locationAt(curveOf(closed, 3), 0.5);
    end->time = 1; // as a division can leave it: still on the last curve, at its very end
    end->point = start->point;
    EXPECT_TRUE(start->equals(end.get(), false));
    EXPECT_TRUE(end->equals(start.get(), false));
    const vxRef<vxCurveLocation> partner = locationAt(curveOf(other, 1), 0.5);
    end->intersection = partner.get();
    partner->intersection = end.get();
    EXPECT_FALSE(start->equals(end.get(), false));
    EXPECT_TRUE(start->equals(end.get(), true));
    EXPECT_FALSE(start->equals(locationAt(curveOf(other, 0), 0).get(), true)) << "another path";
    EXPECT_FALSE(start->equals(locationAt(curveOf(closed, 0), 0.3).get(), true)) << "another place";
    EXPECT_FALSE(start->equals(nullptr, true));
}

TEST(Locations, find_their_curve_again_after_an_edit)
{
    const shapes::XPathPtr path = read(ellipse(0, 0, 10, 10));
    const vxRef<vxCurveLocation> location = locationAt(curveOf(path, 2), 0.25);
    const double offset = location->getOffset();
    curveOf(path, 0)->divideAtTime(0.5, true);
    EXPECT_EQ(location->getCurve(), curveOf(path, 3));
    EXPECT_NEAR(location->getTime(), 0.25, 1e-6);
    EXPECT_NEAR(location->getOffset(), offset, 1e-4); // lengths are quadratures

    // Its own curve is divided: the part with the point is found, here through the end segment.
    curveOf(path, 3)->divideAtTime(0.1, true);
    EXPECT_EQ(location->getCurve(), curveOf(path, 4));
    EXPECT_NEAR(location->getTime(), 0.15 / 0.9, 1e-6);

    vxMatrix shift;
    shift.translate(500, 0);
    path->transformContent(&shift);
    EXPECT_EQ(location->getCurve(), nullptr);
    EXPECT_EQ(location->getTime(), -100);
    EXPECT_TRUE(location->getTangent().isNaN());
    EXPECT_EQ(location->divide(), nullptr);
}

TEST(Locations, that_die_leave_no_links_behind)
{
    const shapes::XPathPtr path = read(rectangle(0, 0, 10, 10));
    const vxRef<vxCurveLocation> a = locationAt(curveOf(path, 0), 0.5);
    vxRef<vxCurveLocation> b = locationAt(curveOf(path, 1), 0.5);
    const vxRef<vxCurveLocation> c = locationAt(curveOf(path, 2), 0.5);
    a->intersection = b.get();
    b->intersection = a.get();
    XPath::linkIntersections(a.get(), b.get());
    XPath::linkIntersections(b.get(), c.get());
    b = vxRef<vxCurveLocation>();
    EXPECT_EQ(a->intersection, nullptr);
    EXPECT_EQ(a->next, c.get());
    EXPECT_EQ(c->previous, a.get());
    EXPECT_FALSE(a->isCrossing() || a->isTouching());
}

TEST(InsertionLists, are_vectors)
{
    std::vector<int> plain(700);
    std::iota(plain.begin(), plain.end(), 0);
    vx::InsertionList<int> list(plain);
    vx::InsertionList<int> grown(std::vector<int>{});
    std::vector<int> plainGrown;
    std::mt19937 random(3);
    for (int i = 0; i < 5000; ++i) {
        // Often in one place, which fills a block.
        const size_t place = i % 3 == 0 ? 650 : random() % (plain.size() + 1);
        list.insert(place, -i);
        plain.insert(plain.begin() + long(place), -i);
        const size_t end = i % 2 == 0 ? 0 : plainGrown.size();
        grown.insert(end, i);
        plainGrown.insert(plainGrown.begin() + long(end), i);
    }
    ASSERT_EQ(list.size(), plain.size());
    for (size_t i = 0; i < plain.size(); ++i)
        ASSERT_EQ(list.at(i), plain[i]) << i;
    std::vector<int> visited;
    grown.forEach([&visited](int element) { visited.push_back(element); });
    EXPECT_EQ(visited, plainGrown);
}
