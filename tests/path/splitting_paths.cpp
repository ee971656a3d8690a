#include "path_fixtures.h"

#include "vxcurvelocation.h"
#include "xpath.h"

using namespace fixture;

namespace {

TEST(SplittingPaths, an_open_path_gives_up_the_part_behind_the_cut)
{
    const double length = wave()->getLength();
    for (double cut : { 0.0, 7.5, length / 2, length - 20, length - 1, -0.5 }) {
        SCOPED_TRACE(cut);
        const vxRef<vxPath> path = wave();
        const vxRef<vxPath> original(path->clone());
        path->addFlags(vxPath::madeClockwise);
        const vxRef<vxPath> piece(path->splitAt(cut));
        const double at = cut < 0 ? cut + length : cut;
        ASSERT_TRUE(piece);
        EXPECT_NEAR(path->getLength(), at, 1e-6);
        EXPECT_NEAR(piece->getLength(), length - at, 1e-6);
        expectPoint(path->getLastSegment()->point, original->getPointAt(at));
        expectPoint(piece->getFirstSegment()->point, original->getPointAt(at));
        expectPoint(piece->getPointAt((length - at) / 2), original->getPointAt((length + at) / 2), 1e-5);
        EXPECT_TRUE(piece->isFlags(vxPath::madeClockwise));
        expectConsistent(*path);
        expectConsistent(*piece);
    }
}

TEST(SplittingPaths, a_closed_path_opens_at_the_cut)
{
    for (double cut : { 0.0, 5.0, 10.0, 37.5, -2.5 }) {
        SCOPED_TRACE(cut);
        const vxRef<vxPath> path = square();
        EXPECT_EQ(path->splitAt(cut), path.get());
        EXPECT_FALSE(path->isClosed());
        EXPECT_NEAR(path->getLength(), 40, 1e-9);
        const vxPoint at = square()->getPointAt(cut);
        expectPoint(path->getFirstSegment()->point, at);
        expectPoint(path->getLastSegment()->point, at);
        EXPECT_NEAR(path->getArea(false, true), 100, 1e-9);
        expectConsistent(*path);
    }
}

TEST(SplittingPaths, by_index_and_time)
{
    const struct {
        const char *name;
        bool closed;
        int index;
        double time;
        bool splits;
        vxPoint at;
    } rows[] = {
        { "end_of_a_curve_is_the_next_start", true, 1, 1, true, { 10, 10 } },
        { "end_of_the_closing_curve_wraps", true, 3, 1, true, { 0, 0 } },
        { "past_the_end_wraps_when_closed", true, 4, 0.5, true, { 5, 0 } },
        { "past_the_end_when_open", false, 3, 0, false, {} },
        { "very_end_when_open", false, 2, 1, false, {} },
        { "very_start_when_open", false, 0, 1e-7, true, { 0, 0 } },
        { "not_a_number", true, 0, undefined, false, {} },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxRef<vxPath> path = square();
        path->setClosed(row.closed);
        const vxRef<vxPath> before(path->clone());
        const vxRef<vxPath> piece(path->split(row.index, row.time));
        ASSERT_EQ(bool(piece), row.splits);
        if (row.splits)
            expectPoint(piece->getFirstSegment()->point, row.at);
        else
            EXPECT_TRUE(path->equals(*before));
    }
}

TEST(SplittingPaths, the_piece_follows_in_the_parent)
{
    XPath compound;
    compound.addChildren({ wave()->clone(), wave()->clone() });
    const double length = compound.getFirstChild()->getLength();
    vxPath *first = compound.getFirstChild();
    vxPath *piece = compound.splitAt(10);
    ASSERT_EQ(compound.children.size(), 3);
    EXPECT_EQ(compound.children.at(1), piece);
    EXPECT_EQ(piece->parent, &compound);
    EXPECT_EQ(piece->index, 1);
    EXPECT_EQ(compound.getLastChild()->index, 2);
    EXPECT_NEAR(first->getLength(), 10, 1e-6);

    piece = compound.splitAt(-3);
    ASSERT_EQ(piece, compound.getLastChild());
    EXPECT_NEAR(piece->getLength(), 3, 1e-6);
    EXPECT_NEAR(compound.getLength(), 2 * length, 1e-6);
    for (double beyond : { 2 * length + 1, -2 * length - 1, undefined })
        EXPECT_EQ(compound.splitAt(beyond), nullptr);
}

} // namespace
