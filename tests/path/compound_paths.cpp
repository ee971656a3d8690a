#include "path_fixtures.h"

#include "vxcurvelocation.h"
#include "xpath.h"

using namespace fixture;

namespace {

TEST(CompoundPaths, flat_children_count_for_bounds)
{
    XPath compound;
    const auto bounds = [&compound] { return compound.getBounds(vxBoundOpt::geometric(), vxStyle()); };
    EXPECT_EQ(bounds(), vxRect());
    compound.addChild(new vxPath);
    EXPECT_EQ(bounds(), vxRect());
    compound.addChild(polygon({ { 5, 5 }, { 25, 5 } }, false)->clone());
    EXPECT_EQ(bounds(), vxRect(5, 5, 20, 0)) << "an empty child does not bring in the origin";
    compound.addChild(polygon({ { 30, 6 }, { 30, 16 } }, false)->clone());
    compound.addChild(polygon({ { undefined, undefined }, { undefined, undefined } }, false)->clone());
    EXPECT_EQ(bounds(), vxRect(5, 5, 25, 11));
}

TEST(CompoundPaths, the_nearest_point_over_all_children)
{
    XPath compound;
    EXPECT_TRUE(compound.getNearestPoint({ 0, 0 }).isNaN());
    EXPECT_EQ(compound.getNearestLocation({ 0, 0 }), nullptr);
    compound.addChildren({ polygon({ { 0, 0 }, { 10, 0 } }, false)->clone(),
                           polygon({ { 0, 8 }, { 10, 8 } }, false)->clone(),
                           polygon({ { 0, 20 }, { 10, 20 } }, false)->clone() });
    expectPoint(compound.getNearestPoint({ 3, 7 }), { 3, 8 });
    expectPoint(compound.getNearestPoint({ 3, 4 }), { 3, 0 });
    const vxRef<vxCurveLocation> location(compound.getNearestLocation({ 12, 20 }));
    EXPECT_EQ(location->getCurve()->path(), compound.getLastChild());
    EXPECT_EQ(location->distance, 2);
    EXPECT_EQ(compound.getCurves().size(), 3);
    EXPECT_EQ(compound.getLength(), 30);
}

TEST(CompoundPaths, reducing_removes_what_became_empty)
{
    XPath compound;
    compound.addChildren(
        { polygon({ { 0, 0 }, { 9, 0 } }, true)->clone(), square()->clone(), new vxPath, square()->clone() });
    EXPECT_EQ(compound.reduce(true), &compound);
    ASSERT_EQ(compound.children.size(), 2);
    EXPECT_EQ(compound.getLastChild()->index, 1);
    EXPECT_EQ(compound.getFirstChild()->getArea(false, true), 100);
    EXPECT_EQ(compound.getLastChild()->getArea(false, true), -100);
}

} // namespace
