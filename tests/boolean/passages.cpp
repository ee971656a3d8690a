#include "support/shapes.h"

#include "vxlevelcount_p.h"

#include <gtest/gtest.h>

#include <cstdio>

// Pieces that a level passes are counted without solving for the crossing; what is counted must be the same.

namespace {

/** A piece whose heights rise or fall, now and then level at an end or all but straight, anywhere. */
vxMono randomPiece(shapes::Random &random)
{
    const double height = std::pow(10, random.between(-2.2, 3));
    const double width = random.between(0, 1) < 0.1 ? 0 : std::pow(10, random.between(-3, 3));
    const double far = std::pow(10, random.between(0, 5));
    double steps[3];
    double sum = 0;
    for (double &step : steps) {
        const double kind = random.between(0, 1);
        step = kind < 0.2 ? 0 : kind < 0.4 ? std::pow(10, random.between(-17, 0)) : random.between(0, 1);
        sum += step;
    }
    vxMono piece;
    const double sign = random.between(-1, 1) < 0 ? -1 : 1;
    piece.values[1] = random.between(-far, far);
    for (int k = 0; k < 3; ++k)
        piece.values[2 * k + 3] = piece.values[2 * k + 1] + sign * height * steps[k] / sum;
    const double x = random.between(-far, far);
    for (int k = 0; k < 8; k += 2)
        piece.values[k] = x + random.between(0, width);
    piece.winding = piece.values[7] > piece.values[1] ? 1 : -1;
    return piece;
}

struct Counted {
    vxWinding plain, quick;
};

Counted countBeside(const vxMono &piece, const vxPoint &p)
{
    const vx::Box reach = vx::reachOf(piece);
    vx::LevelCount plain(p);
    vx::LevelCount quick(p);
    plain.visit(piece);
    quick.visit(piece, vx::passageOf(piece, reach), reach);
    return { plain.result(), quick.result() };
}

} // namespace

TEST(Passages, count_as_the_solved_crossing)
{
    using vxTolerance::closeDistance;
    shapes::Random random(11);
    const double beside[] = { 0,     0.1, 0.5, 0.74, 0.76, 0.9999999, 1.0000001, 1.1,
                              1.249, 1.3, 2,   10,   1e3,  1e6,       1e9,       1e12 };
    int decided = 0;
    int count = 0;
    for (int i = 0; i < 30000; ++i) {
        const vxMono piece = randomPiece(random);
        const double nearEnd = std::pow(10, random.between(-9, 0));
        const double t = i % 3 == 0 ? nearEnd : i % 3 == 1 ? 1 - nearEnd : random.between(0, 1);
        const vxPoint on = vx::pointAt(vx::cubicOf(piece), t);
        for (double off : beside) {
            for (double x : { on.x - off * closeDistance, on.x + off * closeDistance }) {
                const vxPoint p(x, on.y);
                const Counted counted = countBeside(piece, p);
                ASSERT_EQ(counted.quick.winding, counted.plain.winding) << i << " at " << t << ", " << off;
                ASSERT_EQ(counted.quick.contour, counted.plain.contour) << i << " at " << t << ", " << off;
                const vx::Box reach = vx::reachOf(piece);
                const vx::Passage passage = vx::passageOf(piece, reach);
                decided += vx::sideOfCrossing(piece, passage, reach, p) != vx::Side::Unsure;
                ++count;
            }
        }
    }
    std::printf("%d of %d counted without solving\n", decided, count);
    EXPECT_GT(decided, count / 3);
}

TEST(Passages, lie_beside_a_box_on_the_side_of_their_crossings)
{
    shapes::Random random(12);
    int told = 0;
    constexpr int pieces = 30000;
    for (int i = 0; i < pieces; ++i) {
        const vxMono piece = randomPiece(random);
        const vx::Cubic c = vx::cubicOf(piece);
        const vx::Passage passage = vx::passageOf(piece, vx::reachOf(piece));
        const vxPoint on = vx::pointAt(c, random.between(0, 1));
        const double size = 8e-7 * std::pow(10, random.between(0, 4));
        const double x = on.x + size * random.between(-4, 4);
        const vx::Box box{ x - size, on.y - size, x + size, on.y + size };
        if (!(passage.low < box.minY && box.maxY < passage.high))
            continue;
        const vx::Side side = vx::sideAcrossChord(c, box);
        if (side == vx::Side::Unsure)
            continue;
        ++told;
        for (double y : { box.minY, on.y, box.maxY }) {
            double roots[3];
            ASSERT_EQ(vx::timesAtCoordinate(c, 1, y, roots, 0, 1), 1) << i;
            const double crossing = vx::pointAt(c, roots[0]).x;
            ASSERT_EQ(side, crossing < x ? vx::Side::Left : vx::Side::Right) << i;
            ASSERT_TRUE(crossing < box.minX || crossing > box.maxX) << i;
        }
    }
    std::printf("%d of %d told by chords\n", told, pieces);
    EXPECT_GT(told, pieces / 10);
}

TEST(Passages, meet_the_verticals_of_a_box_within_bounds)
{
    shapes::Random random(13);
    int told = 0;
    constexpr int pieces = 30000;
    for (int i = 0; i < pieces; ++i) {
        vxMono piece = randomPiece(random);
        double *v = piece.values;
        if (i % 2 == 0) {
            v[2] = v[0], v[3] = v[1], v[4] = v[6], v[5] = v[7]; // a line
        } else if (v[2] > v[4]) {
            std::swap(v[2], v[4]);
        }
        const vx::Cubic c = vx::cubicOf(piece);
        const double size = 1e-6 * std::pow(10, random.between(0, 4));
        const double x = v[0] + (v[6] - v[0]) * random.between(-0.1, 1.1);
        const vx::Box box{ x - size, 0, x + size, 0 };
        double top, bottom;
        if (std::isnan(v[7]) || !vx::meetsVerticals(piece, box, top, bottom)) // NaN where all steps are 0
            continue;
        ++told;
        constexpr double rounding = 1e-9;
        for (double vertical : { box.minX, x, box.maxX }) {
            double roots[3];
            ASSERT_EQ(vx::timesAtCoordinate(c, 0, vertical, roots, 0, 1), 1) << i;
            const double y = vx::pointAt(c, roots[0]).y;
            ASSERT_TRUE(y >= top - rounding && y <= bottom + rounding) << i;
        }
    }
    std::printf("%d of %d surely meet\n", told, pieces);
    EXPECT_GT(told, pieces / 4);
}

TEST(Passages, leave_doubtful_pieces_to_the_solver)
{
    const auto hasPassage = [](const std::string &values) {
        vxMono piece;
        const QVector<double> v = shapes::numbers(values);
        std::copy(v.begin(), v.end(), piece.values);
        piece.winding = 1;
        const vx::Passage passage = vx::passageOf(piece, vx::reachOf(piece));
        return passage.low < passage.high;
    };
    EXPECT_TRUE(hasPassage("0 0 1 0 2 9 3 9"));
    EXPECT_FALSE(hasPassage("0 0 1 5 2 4 3 9")) << "heights of control points not in order";
    EXPECT_FALSE(hasPassage("0 0 1 0 2 0.009 3 0.009")) << "too low for its rounding to be nothing";
    EXPECT_FALSE(hasPassage("0 0 1 0 2 9 2e6 9")) << "too far out";
    EXPECT_FALSE(hasPassage("0 0 nan 0 2 9 3 9"));
}
