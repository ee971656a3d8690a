#include "path_fixtures.h"

#include "vxcurvelocation.h"

using namespace fixture;

namespace {

TEST(OwnershipOfSegments, setting_the_same_location_again_keeps_it)
{
    const vxRef<vxSegment> segment(new vxSegment(1, 2));
    auto *location = new vxCurveLocation(nullptr, 0, vxPoint(1, 2), false, 0);
    segment->setIntersection(location);
    segment->setIntersection(location);
    EXPECT_EQ(location->refCount, 1);
    segment->setIntersection(nullptr);
    EXPECT_EQ(segment->intersection(), nullptr);
}

TEST(OwnershipOfSegments, a_segment_of_another_path_is_cloned)
{
    const vxRef<vxPath> path = square();
    const vxRef<vxPath> other(new vxPath);
    vxSegment *first = path->getFirstSegment();
    vxSegment *added = other->addSegment(first);
    EXPECT_NE(added, first);
    EXPECT_EQ(added->path, other.get());
    EXPECT_EQ(first->path, path.get());
    EXPECT_EQ(other->addSegment(nullptr), nullptr);

    // Free segments move in as they are, but only once.
    auto *free = new vxSegment(5, 5);
    const QList<vxSegment *> twice = other->addSegments({ free, nullptr, free }, 0);
    ASSERT_EQ(twice.size(), 2);
    EXPECT_EQ(twice.first(), free);
    EXPECT_NE(twice.last(), free);
    EXPECT_EQ(other->getLastSegment(), added);
    expectConsistent(*other);
}

TEST(OwnershipOfSegments, those_held_elsewhere_outlive_removal_and_the_path)
{
    vxRef<vxPath> path = square();
    const vxRef<vxCurve> curve(path->getCurves().at(1));
    const vxRef<vxSegment> removed(path->getSegments().at(1));
    EXPECT_TRUE(removed->remove());
    EXPECT_EQ(removed->path, nullptr);
    EXPECT_EQ(removed->index, -1);
    EXPECT_FALSE(removed->remove());
    EXPECT_EQ(curve->path(), nullptr) << "the curve that started there is free";
    EXPECT_EQ(curve->getNext(), nullptr);

    const vxRef<vxSegment> kept(path->getFirstSegment());
    path = vxRef<vxPath>();
    EXPECT_EQ(kept->path, nullptr);
    EXPECT_EQ(kept->getNext(), nullptr);
    EXPECT_EQ(kept->refCount, 1u);
    expectPoint(curve->getPoint2(), { 10, 10 });
}

TEST(OwnershipOfSegments, a_path_can_be_set_to_its_own_segments)
{
    const vxRef<vxPath> path = square();
    path->getCurves();
    QList<vxSegment *> segments = path->getSegments();
    std::reverse(segments.begin(), segments.end());
    path->setSegments({ segments.at(0), segments.at(1), segments.at(2), segments.at(2) });
    EXPECT_EQ(path->getFirstSegment(), segments.at(0));
    EXPECT_NE(path->getLastSegment(), segments.at(2)) << "a second mention is a clone";
    expectConsistent(*path);
    path->setSegments({});
    EXPECT_TRUE(path->isEmpty());
}

} // namespace
