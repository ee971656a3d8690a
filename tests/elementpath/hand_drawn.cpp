#include "elements.h"
#include "vxcurvelocation.h"
#include "vxlengthindex_p.h"
#include "xpath.h"

#include <gtest/gtest.h>

using namespace elements;

TEST(HandDrawn, displacement_is_the_noise_of_the_distance)
{
    // Sum over octaves k of lattice value n(2^k x) * 0.1^k, the lattice worked out in 32-bit arithmetic:
    // n(1), n(2), n(4), n(8), n(16) = 1 - { 1316808037, 758455919, 444786017, 1946753589, 510311261 } / 2^30.
    const double noise[] = { -0.1919652113644406, 0.344603134890087 };
    PZPath across = read("M 0 0 L 50 0"), down = read("M 0 0 L 0 50"), drawn;
    drawn.manualPath(across, 30, 20); // samples at 20 and 40: noise arguments 1 and 2
    down.manualPath(down, 30, 20);
    ASSERT_TRUE(drawn.count() == 4 && down.count() == 4);
    for (int i : { 0, 1 }) {
        EXPECT_LT(distance(drawn.at(i + 1).toPoint(), QPointF(20 * (i + 1), -30 * noise[i])), 1e-12);
        EXPECT_LT(distance(down.at(i + 1).toPoint(), QPointF(30 * noise[i], 20 * (i + 1))), 1e-12);
    }
    EXPECT_EQ(drawn.at(3).toPoint(), QPointF(50, 0));
}

TEST(HandDrawn, steps)
{
    const struct {
        const char *before;
        double step;
        const char *after;
    } rows[] = {
        { "M 0 0 L 4 0", 0.4, "M 0 0 L 1.2 0 L 2.4 0 L 3.6 0" }, // nearer samples are merged
        { "M 0 0 L 4 0 L 4 9 L 0 0 Z", 100, "M 0 0" },
        { "M 0 0 L 40 0 M 0 9 L 40 9", inf, "M 0 0 L 40 0 M 0 9 L 40 9" },
        { "M 0 0 L 40 0", 20, "M 0 0 L 20 0 L 40 0" },
        { "M 0 0 L nan 5 L 40 0", 20, "M 0 0 L 40 0" },
        { "M 0 0 L 40 0", undefined, "L 8 8" },
        { "M 0 0 L 40 0", 1e-7, "L 8 8" },
    };
    for (const auto &row : rows) {
        PZPath source = read(row.before), drawn = read("L 8 8");
        drawn.manualPath(source, 0, row.step);
        EXPECT_EQ(text(drawn), row.after) << row.before << " " << row.step;
    }
}

TEST(HandDrawn, places_are_those_of_the_walk_over_all_curves)
{
    XPath xpath;
    read("M 0 0 C 80 0 100 40 100 120 L 100 121 L 40 100 C 20 90 20 60 0 60 L 0 0 Z").toXPath(xpath);
    const vxPath &path = *xpath.getFirstChild();
    const vxLengthIndex index(path);
    std::vector<double> offsets = { 0, path.getLength() };
    for (double s = 0.37; s < index.length(); s += 0.37)
        offsets.push_back(s);
    for (const vxCurve *curve : path.getCurves()) // on and beside the joints
        offsets.insert(offsets.end(), { curve->getOffsetAtTime(1), curve->getOffsetAtTime(1) - 1e-8 });
    for (double s : offsets) {
        vxLengthIndex::Place place;
        vxCurveLocation *location = path.getLocationAt(s);
        ASSERT_TRUE(location && index.placeAt(s, place)) << s;
        EXPECT_TRUE(place.curve == location->getCurve() && place.time == location->getTime()) << s;
        EXPECT_TRUE(place.point == location->getPoint() && place.tangent() == location->getTangent()) << s;
        location->release();
    }
}
