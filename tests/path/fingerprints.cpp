#include "path_fixtures.h"

#include "vxfingerprint_p.h"

#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

using namespace fixture;

namespace {

/** Coordinates as drawings have them: whole numbers, fractions of a power of two, any, and large ones. */
double coordinate(std::mt19937 &random)
{
    const double any = random() / 4294967296.0;
    switch (random() % 4) {
    case 0:
        return std::floor(any * 200000);
    case 1:
        return std::floor(any * 100000) / 64;
    case 2:
        return any * 1000;
    default:
        return std::ldexp(std::floor(any * 1024), int(random() % 30));
    }
}

/** A change as edits make them: by a step of some power of two, of the sign, of a few bits, to another value.
 */
double changed(double value, std::mt19937 &random)
{
    quint64 bits;
    switch (random() % 4) {
    case 0:
        return value + std::ldexp(1, int(random() % 24) - 12);
    case 1:
        return -value;
    case 2:
        std::memcpy(&bits, &value, sizeof bits);
        bits ^= quint64(1 + random() % 7) << random() % 62;
        std::memcpy(&value, &bits, sizeof bits);
        return value;
    default:
        return coordinate(random);
    }
}

std::vector<double> valuesOf(const QList<vxSegment *> &segments)
{
    std::vector<double> values;
    for (const vxSegment *s : segments)
        values.insert(values.end(), { s->point.x, s->point.y, s->handleIn.x, s->handleIn.y, s->handleOut.x,
                                      s->handleOut.y });
    return values;
}

TEST(Fingerprints, tell_every_edit)
{
    std::mt19937 random(7);
    int edits = 0;
    for (int round = 0; round < 2000; ++round) {
        const vxRef<vxPath> path(new vxPath(nullptr, true));
        for (int i = 0; i < 4; ++i)
            path->addSegment(new vxSegment(coordinate(random), coordinate(random)));
        const QList<vxSegment *> segments = path->getSegments();
        for (int edit = 0; edit < 100; ++edit) {
            const quint64 before = vx::Fingerprint::of(segments, true);
            const std::vector<double> valuesBefore = valuesOf(segments);
            for (int count = 1 + int(random() % 4); count > 0; --count) {
                vxSegment &segment = *segments.at(int(random() % 4));
                vxPoint &point = random() % 4 ? segment.point : segment.handleOut;
                double &value = random() % 2 ? point.x : point.y;
                value = changed(value, random);
            }
            const std::vector<double> values = valuesOf(segments);
            if (std::memcmp(values.data(), valuesBefore.data(), values.size() * sizeof(double)) == 0)
                continue; // undone again
            ++edits;
            ASSERT_NE(vx::Fingerprint::of(segments, true), before);
        }
        EXPECT_NE(vx::Fingerprint::of(segments, true), vx::Fingerprint::of(segments, false));
    }
    EXPECT_GT(edits, 100000);
}

TEST(Fingerprints, tell_what_moves_together)
{
    const vxRef<vxPath> path = square();
    const QList<vxSegment *> segments = path->getSegments();
    const quint64 before = vx::Fingerprint::of(segments, true);
    const std::function<void(vxSegment &)> edits[] = {
        [](vxSegment &s) { s.point.x = -s.point.x; },
        [](vxSegment &s) { s.point = s.point.multiply(-1); },
        [](vxSegment &s) { s.point = s.point.multiply(2); },
        [](vxSegment &s) {
            s.point = s.point.add({ 0.25, 0 });
        },
        [](vxSegment &s) { std::swap(s.point.x, s.point.y); },
        [](vxSegment &s) {
            s.handleIn = s.handleOut = { 1, 1 };
        },
    };
    for (const auto &edit : edits) {
        const vxRef<vxPath> moved(path->clone());
        for (vxSegment *segment : moved->getSegments())
            edit(*segment);
        EXPECT_NE(vx::Fingerprint::of(moved->getSegments(), true), before);
    }
    QList<vxSegment *> turned = segments;
    turned.append(turned.takeFirst());
    EXPECT_NE(vx::Fingerprint::of(turned, true), before);
}

/** Whether a contour is closed may be written, too: the curves follow. */
TEST(Fingerprints, tell_that_a_contour_was_closed)
{
    const vxRef<vxPath> path = polygon({ { 0, 0 }, { 100, 0 }, { 100, 100 } }, false);
    EXPECT_EQ(path->getCurves().size(), 2);
    path->_noticeEdits();
    path->closed = true;
    path->_noticeEdits();
    EXPECT_EQ(path->getCurves().size(), 3);
    expectConsistent(*path);
}

} // namespace
