#pragma once

#include "vxcurve.h"
#include "vxpath.h"
#include "vxref_p.h"
#include "vxsegment.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

/** What the tests of this room share: paths that free themselves and comparisons that say what differs. */
namespace fixture {

constexpr double undefined = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

inline vxRef<vxPath> polygon(std::initializer_list<vxPoint> points, bool closed)
{
    vxRef<vxPath> path(new vxPath(nullptr, closed));
    for (const vxPoint &p : points)
        path->lineToPt(p);
    return path;
}

/** Clockwise on screen, 10 by 10, from the origin. */
inline vxRef<vxPath> square()
{
    return polygon({ { 0, 0 }, { 10, 0 }, { 10, 10 }, { 0, 10 } }, true);
}

/** An open path of two curves and a line, all of even speed, so that lengths are good to many digits. */
inline vxRef<vxPath> wave()
{
    vxRef<vxPath> path(new vxPath);
    path->moveTo(0, 0);
    path->cubicCurveTo({ 10, -8 }, { 20, 8 }, { 30, 0 });
    path->quadraticCurveTo({ 45, 12 }, { 60, 6 });
    path->lineTo(80, 6);
    return path;
}

inline vxRect boundsOf(const vxPath &path)
{
    return path.getBounds(vxBoundOpt::geometric(), vxStyle());
}

inline void expectPoint(const vxPoint &actual, const vxPoint &expected, double tolerance = 1e-9)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
}

/** The cached curves are those that the segments ask for, and everything points where it should. */
inline void expectConsistent(const vxPath &path)
{
    const QList<vxSegment *> segments = path.getSegments();
    for (int i = 0; i < segments.size(); ++i) {
        ASSERT_EQ(segments.at(i)->index, i);
        ASSERT_EQ(segments.at(i)->path, &path);
    }
    const QList<vxCurve *> curves = path.getCurves();
    ASSERT_EQ(curves.size(), path._countCurves());
    for (int i = 0; i < curves.size(); ++i) {
        ASSERT_EQ(curves.at(i)->path(), &path);
        ASSERT_EQ(curves.at(i)->segment1(), segments.at(i));
        ASSERT_EQ(curves.at(i)->segment2(), segments.at((i + 1) % segments.size()));
    }
    const vxRef<vxPath> fresh(path.clone());
    EXPECT_EQ(path.getLength(), fresh->getLength());
    EXPECT_EQ(path.getArea(true, false), fresh->getArea(true, false));
    EXPECT_EQ(boundsOf(path), boundsOf(*fresh));
}

} // namespace fixture
