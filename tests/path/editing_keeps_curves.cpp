#include "path_fixtures.h"

#include <random>

using namespace fixture;

namespace {

TEST(EditingKeepsCurves, any_sequence_of_edits_agrees_with_a_fresh_path)
{
    std::mt19937 random(11);
    const auto below = [&random](int n) { return int(random() % unsigned(n)); };
    const auto newSegment = [&] {
        const auto coordinate = [&] { return double(below(2000)) / 20 - 50; };
        return new vxSegment({ coordinate(), coordinate() }, { coordinate(), 0 }, { 0, coordinate() });
    };
    for (int round = 0; round < 60; ++round) {
        const vxRef<vxPath> path(new vxPath(nullptr, round % 2 == 0));
        for (int step = 0; step < 25; ++step) {
            const int size = path->getSegments().size();
            const quint32 version = path->version;
            const int edit = below(8);
            SCOPED_TRACE(testing::Message() << "round " << round << " step " << step << " edit " << edit);
            if (edit <= 1)
                path->insertSegment(below(size + 1), newSegment());
            else if (edit == 2)
                path->addSegments({ newSegment(), newSegment(), newSegment() }, below(size + 1));
            else if (edit == 3 && size > 0)
                path->removeSegment(below(size));
            else if (edit == 4)
                for (vxSegment *segment : path->removeSegments(below(size + 1), below(size + 1)))
                    segment->release();
            else if (edit == 5)
                path->setClosed(!path->isClosed());
            else if (edit == 6)
                path->reverse();
            else if (path->getFirstCurve())
                path->getCurves().at(below(path->_countCurves()))->divideAtTime(0.3, false);
            EXPECT_TRUE(path->version != version || path->getSegments().size() == size);
            expectConsistent(*path);
            if (testing::Test::HasFatalFailure())
                return;
        }
    }
}

TEST(EditingKeepsCurves, an_insertion_keeps_every_curve_object)
{
    for (bool closed : { false, true }) {
        for (int at = 0; at <= 4; ++at) {
            SCOPED_TRACE(testing::Message() << closed << " at " << at);
            const vxRef<vxPath> path = square();
            path->setClosed(closed);
            const QList<vxCurve *> before = path->getCurves();
            path->insertSegment(at, new vxSegment(5, 5));
            const QList<vxCurve *> after = path->getCurves();
            EXPECT_EQ(after.size(), before.size() + 1);
            for (vxCurve *curve : before)
                EXPECT_TRUE(after.contains(curve));
        }
    }
}

TEST(EditingKeepsCurves, cached_measures_follow_the_edit)
{
    const vxRef<vxPath> path = square();
    vxCurve *first = path->getFirstCurve();
    EXPECT_EQ(first->getLength(), 10);
    EXPECT_EQ(first->getBounds(), vxRect(0, 0, 10, 0));
    path->getSegments().at(1)->setPoint({ 20, 0 });
    path->_changed();
    EXPECT_EQ(first->getLength(), 20);
    EXPECT_EQ(first->getBounds(), vxRect(0, 0, 20, 0));
    EXPECT_EQ(boundsOf(*path), vxRect(0, 0, 20, 10));

    first->segment1()->setHandleOut({ 0, -5 });
    first->clearHandles();
    EXPECT_EQ(first->getLength(), 20);
    EXPECT_FALSE(path->hasHandles());

    EXPECT_TRUE(first->remove());
    EXPECT_EQ(path->getFirstCurve(), first);
    expectPoint(first->getPoint2(), { 10, 10 });
}

} // namespace
