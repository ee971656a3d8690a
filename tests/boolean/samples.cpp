#include "support/shapes.h"

#include "vxcurvelocation.h"
#include "vxcurvevalues_p.h"
#include "vxintersect_p.h"
#include "vxlocationowner_p.h"
#include "vxsampler_p.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

// The samples of stretches against a plain form that looks at every curve and every piece.

using namespace vxTolerance;
using shapes::read;
using shapes::XPathPtr;

namespace {

struct Stretch {
    std::vector<vxCurve *> curves;
    double length = 0;

    explicit Stretch(vxSegment *start)
    {
        vxSegment *segment = start;
        do {
            curves.push_back(segment->getCurve());
            length += curves.back()->getLength();
            segment = segment->getNext();
        } while (segment && !segment->intersection() && segment != start);
    }

    /** The curve and point at a part of the length. */
    vxCurve *at(double fraction, double &time) const
    {
        double left = length * fraction;
        for (vxCurve *curve : curves) {
            if (curve->getLength() >= left) {
                time = curve->getTimeAt(left);
                return curve;
            }
            left -= curve->getLength();
        }
        return nullptr;
    }

    bool isOnAnother(const vxPoint &p, const QList<vxCurve *> &all) const
    {
        return std::any_of(all.begin(), all.end(), [&](vxCurve *curve) {
            const vx::Box box = vx::pulledBox(curve->_cubic());
            return std::find(curves.begin(), curves.end(), curve) == curves.end() &&
                   p.x >= box.minX - closeDistance && p.x <= box.maxX + closeDistance &&
                   p.y >= box.minY - closeDistance && p.y <= box.maxY + closeDistance &&
                   curve->getTimeOf(p) != noTime;
        });
    }
};

QList<vxMono *> piecesOf(const XPath &path)
{
    QList<vxMono *> pieces;
    for (const vxPath *child : path.children)
        pieces += child->getMonoCurves();
    return pieces;
}

/** A place on a stretch where its count may be taken. */
struct Place {
    vxCurve *curve;
    vxPoint point;
    double rise; ///< sine of the tangent's angle to the level

    Place(const Stretch &stretch, double fraction)
    {
        double time = 0;
        curve = stretch.at(fraction, time);
        if (!curve)
            return;
        point = curve->getPointAtTime(time);
        rise = std::fabs(curve->getTangentAtTime(time).y);
    }
    bool isHorizontal() const { return rise < angleMargin; }
    bool grazes() const
    {
        return (!isHorizontal() && rise < 1e-3) || point.getDistance(curve->getPoint1()) <= 1e-3 ||
               point.getDistance(curve->getPoint2()) <= 1e-3;
    }
};

vxWinding countAt(const Place &place, const XPath &a, const XPath &b, int op)
{
    const auto winding = [&](const QList<vxMono *> &pieces) {
        return XPath::getWinding(place.point, pieces, place.isHorizontal());
    };
    const XPath *own = place.curve->path()->parent;
    if (op == 3 && own == &a && winding(piecesOf(b)).winding != 0)
        return {};
    if (op == 3 && own == &b && winding(piecesOf(a)).winding == 0)
        return {};
    return winding(piecesOf(a) + piecesOf(b));
}

/** The sample's count and what it notes, step by step; asked counts the counts that a second one checked. */
vxWinding plainCount(vxSegment *start, const XPath &a, const XPath &b, int op, vx::RunNotes &notes,
                     int &asked)
{
    const Stretch stretch(start);
    const QList<vxCurve *> all = a.getCurves() + b.getCurves();
    const std::vector<double> others = { 0.381966, 0.618034, 0.236068, 0.763932, 0.145898, 0.854102 };
    const auto isFree = [&](const Place &place) {
        return place.curve && !stretch.isOnAnother(place.point, all);
    };
    Place place(stretch, 0.5);
    if (!isFree(place)) {
        notes.movedSample = true;
        const auto better = std::find_if(others.begin(), others.end(),
                                         [&](double other) { return isFree(Place(stretch, other)); });
        if (better != others.end())
            place = Place(stretch, *better);
    }
    const vxWinding count = countAt(place, a, b, op);
    if (place.grazes()) {
        ++asked;
        const auto sound = std::find_if(others.begin(), others.end(), [&](double other) {
            const Place second(stretch, other);
            return isFree(second) && !second.grazes();
        });
        const vxWinding second =
            sound == others.end() ? vxWinding{ -1, false } : countAt(Place(stretch, *sound), a, b, op);
        notes.grazedSample = second.winding != count.winding ||
                             (op == 2 && count.winding != 1 && second.contour != count.contour);
    }
    return count;
}

struct Tally {
    int stretches = 0;
    int moved = 0;
    int grazed = 0;
};

void expectAsPlain(XPath &a, XPath &b, const std::string &what, Tally &tally)
{
    const QList<vxCurveLocation *> crossings = a.getCrossings(&b);
    const vx::LocationOwner owner(crossings);
    a.divideLocations(vxCurveLocation::expand(crossings), 0);
    for (int op : { 2, 3 }) {
        vx::RunNotes notes;
        vx::Sampler sampler(&a, &b, op, notes);
        for (const XPath *path : { &a, &b }) {
            for (const vxPath *child : qAsConst(path->children)) {
                for (vxSegment *segment : child->getSegments()) {
                    if (!segment->intersection() && segment->index != 0)
                        continue;
                    vx::RunNotes plainNotes;
                    const vxWinding plain = plainCount(segment, a, b, op, plainNotes, tally.grazed);
                    notes = vx::RunNotes();
                    sampler.propagate(segment);
                    ASSERT_EQ(segment->winding, plain.winding) << what;
                    ASSERT_EQ(segment->contour, plain.contour) << what;
                    ASSERT_EQ(notes.movedSample, plainNotes.movedSample) << what;
                    ASSERT_EQ(notes.grazedSample, plainNotes.grazedSample) << what;
                    ++tally.stretches;
                    tally.moved += notes.movedSample;
                }
            }
        }
    }
    for (const XPath *path : { &a, &b }) {
        for (const vxPath *child : qAsConst(path->children)) {
            for (vxSegment *segment : child->getSegments())
                segment->setIntersection(nullptr);
        }
    }
}

/** Rectangles and ellipses, on a grid or beside it. */
XPathPtr tiles(shapes::Random &random)
{
    const bool onGrid = random.between(0, 1) < 0.5;
    const auto any = [&](double lo, double hi) {
        const double value = random.between(lo, hi);
        return onGrid ? std::round(value) : value;
    };
    std::string data;
    for (int i = 0; i < 4; ++i) {
        const double x = any(0, 20), y = any(0, 20), width = any(1, 12), height = any(1, 12);
        data += i % 2 == 0 ? shapes::rectangle(x, y, width, height) : shapes::ellipse(x, y, width, height);
        data += " ";
    }
    return read(data);
}

} // namespace

TEST(Samples, count_and_note_what_the_plain_form_does)
{
    Tally tally;
    for (const shapes::Case &c : shapes::cases())
        expectAsPlain(*read(c.a), *read(c.b), c.id, tally);
    shapes::Random random(8);
    for (int i = 0; i < 200; ++i)
        expectAsPlain(*tiles(random), *tiles(random), "tiles " + std::to_string(i), tally);
    std::printf("%d stretches, %d moved, %d grazed\n", tally.stretches, tally.moved, tally.grazed);
    EXPECT_GT(tally.stretches, 1000);
    EXPECT_GT(tally.moved, 20);
    EXPECT_GT(tally.grazed, 20);
}
