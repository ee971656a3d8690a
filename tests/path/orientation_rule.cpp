#include "path_fixtures.h"

#include "xpath.h"

using namespace fixture;

namespace {

vxPath *ring(bool clockwise)
{
    vxPath *path = square()->clone();
    if (!clockwise)
        path->reverse();
    return path;
}

double areaOf(const XPath &compound, int child)
{
    return compound.children.at(child)->getArea(false, true);
}

TEST(OrientationRule, adding_orients_what_carries_no_flag)
{
    XPath compound;
    compound.addChild(ring(false));
    compound.addChild(ring(true));
    EXPECT_EQ(areaOf(compound, 0), 100);
    EXPECT_EQ(areaOf(compound, 1), -100);
    vxPath *decided = ring(true);
    decided->setClockwise(true);
    compound.addChild(decided);
    EXPECT_EQ(areaOf(compound, 2), 100) << "was decided before";
    compound.addChild(ring(true), 0);
    EXPECT_EQ(areaOf(compound, 0), 100);
    EXPECT_EQ(areaOf(compound, 1), 100) << "adding leaves the others alone";
    for (int i = 0; i < compound.children.size(); ++i) {
        EXPECT_EQ(compound.children.at(i)->index, i);
        EXPECT_EQ(compound.children.at(i)->parent, &compound);
    }
    compound.addChild(nullptr);
    compound.addChild(polygon({ { 0, 10 }, { 10, 10 }, { 10, 0 } }, false)->clone(), 99);
    EXPECT_EQ(compound.children.size(), 5);
    EXPECT_FALSE(compound.getLastChild()->isFlags(3)) << "open children are never turned";
}

TEST(OrientationRule, removing_examines_all_that_remain)
{
    XPath compound;
    compound.addChildren({ ring(true), ring(true), ring(true) });
    EXPECT_EQ(areaOf(compound, 2), -100);
    const vxRef<vxPath> first(compound.getFirstChild());
    compound.removeChild(first.get());
    EXPECT_EQ(first->parent, nullptr);
    EXPECT_EQ(first->refCount, 1u);
    EXPECT_EQ(areaOf(compound, 0), 100) << "the next one becomes the outer contour";
    EXPECT_EQ(areaOf(compound, 1), -100);
    compound.removeChildren(0, 1);
    EXPECT_EQ(areaOf(compound, 0), 100);
    compound.removeChildren(5, 2);
    EXPECT_EQ(compound.children.size(), 1);
    compound.removeChildren();
    EXPECT_TRUE(compound.children.isEmpty());
    EXPECT_FALSE(compound.isClockwise());
}

TEST(OrientationRule, a_reference_given_to_remove_child_is_always_consumed)
{
    XPath compound;
    const vxRef<vxPath> stranger = square();
    stranger->addRef();
    compound.removeChild(stranger.get());
    EXPECT_EQ(stranger->refCount, 1u);
    compound.removeChild(nullptr);

    // A path that moved on keeps its new parent.
    XPath other;
    vxPath *path = ring(true);
    compound.addChild(path);
    other.addChild(path);
    compound.removeChild(path);
    EXPECT_EQ(path->parent, &other);
    EXPECT_EQ(path->refCount, 1u);
}

} // namespace
