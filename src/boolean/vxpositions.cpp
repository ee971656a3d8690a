#include "vxpositions_p.h"

#include "vxcubic_p.h"
#include "vxcurvelocation.h"
#include "vxcurvevalues_p.h"
#include "vxnearness_p.h"
#include "vxpath.h"
#include "vxsharedborder_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <optional>

using namespace vxTolerance;

namespace vx {

namespace {

/** Path units; far above the distance within which vertices count as one place. */
constexpr double shortest = 1e-4;
/** Sine of the angle below which two directions are not told from each other. */
constexpr double leastSine = 1e-2;

/** A curve that leaves a vertex. */
struct Ray {
    Cubic curve;          ///< from the vertex
    const vxSegment *end; ///< null where it ends at none
    vxPoint direction;    ///< of any length

    explicit Ray(const Cubic &c, const vxSegment *itsEnd = nullptr) : curve(c), end(itsEnd)
    {
        const vxPoint start = curve.p0();
        const vxPoint toward = isChord(curve) || !hasHandles(curve) ? curve.p3()
                               : curve.p1() != start                ? curve.p1()
                                                                    : curve.p2();
        direction = toward.subtract(start);
    }

    /** Long enough to have a direction at the scale at which places are told apart. */
    bool isClear() const
    {
        constexpr double square = shortest * shortest;
        return direction.dot(direction) > square && curve.p0().getDistance(curve.p3(), true) > square;
    }
};

/** Whether two directions differ for sure. */
bool areApart(const vxPoint &a, const vxPoint &b)
{
    return a.dot(b) < 0 || std::fabs(a.cross(b)) > leastSine * a.getLength() * b.getLength();
}

/** A curve seen along a direction from a place: x that way, y to its right. */
Cubic seenFrom(const vxPoint &place, const vxPoint &direction, const Cubic &c)
{
    Cubic seen;
    for (int i = 0; i < 8; i += 2) {
        const vxPoint p = vxPoint(c.v[i], c.v[i + 1]).subtract(place);
        seen.v[i] = direction.dot(p);
        seen.v[i + 1] = direction.cross(p);
    }
    return seen;
}

bool ascends(const Cubic &c)
{
    return c.v[0] <= c.v[2] && c.v[2] <= c.v[4] && c.v[4] <= c.v[6] && c.v[0] < c.v[6];
}

/** Shortens a curve to a beginning of which x ascends; false where only a small part of it does. */
bool shortenToGraph(Cubic &c)
{
    constexpr int halvings = 3;
    for (int i = 0; i < halvings && !ascends(c); ++i) {
        const Cubic whole = c;
        Cubic rest;
        subdivide(whole, 0.5, c, rest);
    }
    return ascends(c);
}

/** y of a curve whose x ascends, at an x on its way; NaN where Newton's method does not find the place. */
double heightAt(const Cubic &c, double x)
{
    constexpr double accuracy = 1e-9; // path units
    constexpr int mostSteps = 32;
    const double part = (x - c.v[0]) / (c.v[6] - c.v[0]);
    if (isChord(c))
        return c.v[1] + part * (c.v[7] - c.v[1]);
    const SteppedCurve curve(c);
    double before = 0, after = 1;
    double t = part;
    for (int i = 0; i < mostSteps; ++i) {
        vxPoint place, velocity;
        curve.evaluate(t, place, velocity);
        const double off = place.x - x;
        if (std::fabs(off) <= accuracy)
            return place.y;
        (off > 0 ? after : before) = t;
        const double next = t - off / velocity.x;
        t = next > before && next < after ? next : (before + after) / 2;
    }
    return qQNaN();
}

/** Path units, far above closeDistance: curves that lie so far apart have parted. */
constexpr double clear = 1e-5;

/**
 * On which side of a line a curve has parted from it halfway to an extent, told by control points; 0 where
 * these do not tell. Both are graphs. With control points that ascend, x advances by no more than 3 t of its
 * way up to time t; and a curve whose control points lie on one side of a line is off it by no less than t^3
 * of what its end is.
 */
int sideOfLine(const Cubic &c, const Cubic &line, double extent)
{
    const double slope = (line.v[7] - line.v[1]) / (line.v[6] - line.v[0]);
    const auto off = [&](int i) { return c.v[i + 1] - line.v[1] - slope * (c.v[i] - line.v[0]); };
    const double atEnd = off(6);
    const int side = atEnd > 0 ? 1 : -1;
    if (off(2) * side < 0 || off(4) * side < 0)
        return 0;
    const double t = (extent / 2 - c.v[0]) / (3 * (c.v[6] - c.v[0]));
    return t > 0 && t * t * t * std::fabs(atEnd) > clear + std::fabs(off(0)) ? side : 0;
}

/**
 * On which side a curve leaves another one that begins as it does: 1 to its right, -1 to its left, 0 not
 * sure. Seen in the direction of the other one, both begin as graphs, which do not meet before one of them
 * ends.
 */
int sideOfTangent(const Ray &ray, const Ray &other)
{
    const vxPoint direction = other.direction.normalize(1);
    Cubic own = seenFrom(other.curve.p0(), direction, ray.curve);
    Cubic theirs = seenFrom(other.curve.p0(), direction, other.curve);
    if (!shortenToGraph(own) || !shortenToGraph(theirs))
        return 0;
    const double extent = std::min(own.p3().x, theirs.p3().x);
    int side = isChord(theirs) ? sideOfLine(own, theirs, extent)
               : isChord(own)  ? -sideOfLine(theirs, own, extent)
                               : 0;
    if (side != 0)
        return side;
    for (const double part : { 0.5, 0.99 }) {
        const double distance = heightAt(own, part * extent) - heightAt(theirs, part * extent);
        if (!(std::fabs(distance) > clear))
            continue;
        const int here = distance > 0 ? 1 : -1;
        if (side == -here)
            return 0;
        side = here;
    }
    return side;
}

/** Both curves of an outline at a vertex, and whether its operand fills what lies to their right. */
struct Corner {
    Ray in, out;
    bool fillsRight;

    /** At a vertex of a closed contour. */
    Corner(const vxSegment &vertex, bool fillsItsRight)
        : in(cubicBetween(*vertex.getPrevious(), vertex).reversed(), vertex.getPrevious()),
          out(cubicBetween(vertex, *vertex.getNext()), vertex.getNext()), fillsRight(fillsItsRight)
    {
    }
    /** Within a curve. */
    Corner(const Cubic &before, const Cubic &after, bool fillsItsRight)
        : in(before.reversed()), out(after), fillsRight(fillsItsRight)
    {
    }

    bool isClear() const { return in.isClear() && out.isClear() && (!isCusp() || sideOfIn() != 0); }

    /** Whether a ray leads into what is filled; none where that is not sure. */
    std::optional<bool> holds(const Ray &ray) const
    {
        if (isCusp())
            return holdsAtCusp(ray);
        const bool isBesideOut = !areApart(ray.direction, out.direction);
        const bool isBesideIn = !areApart(ray.direction, in.direction);
        if (!isBesideOut && !isBesideIn)
            return isRight(ray.direction) == fillsRight;
        // The right side begins to the right of the one and ends to the left of the other.
        const int side = isBesideOut == isBesideIn ? 0
                         : isBesideOut             ? sideOfTangent(ray, out)
                                                   : -sideOfTangent(ray, in);
        if (side == 0)
            return std::nullopt;
        return (side > 0) == fillsRight;
    }

private:
    /** Whether the outline goes back the way that it came, but for a bend. */
    bool isCusp() const { return !areApart(in.direction, out.direction); }
    int sideOfIn() const { return sideOfTangent(in, out); }

    std::optional<bool> holdsAtCusp(const Ray &ray) const
    {
        // The right side is what lies between the two, or all but that.
        const bool isBetween = sideOfIn() > 0;
        if (areApart(ray.direction, out.direction))
            return isBetween != fillsRight;
        const int fromOut = sideOfTangent(ray, out);
        const int fromIn = sideOfTangent(ray, in);
        if (fromOut == 0 || fromIn == 0)
            return std::nullopt;
        const bool isRight = isBetween ? fromOut > 0 && fromIn < 0 : fromOut > 0 || fromIn < 0;
        return isRight == fillsRight;
    }

    /** Whether a direction lies in the turn, clockwise on screen, from the one curve to the other. */
    bool isRight(const vxPoint &direction) const
    {
        const bool isBehindOut = out.direction.cross(direction) > 0;
        const bool isBeforeIn = direction.cross(in.direction) > 0;
        return out.direction.cross(in.direction) > 0 ? isBehindOut && isBeforeIn : isBehindOut || isBeforeIn;
    }
};

/** Whether two curves are the same line, wherever on it their handles lie. */
bool areSameLine(const Cubic &a, const Cubic &b)
{
    return isStraight(a) && isStraight(b) &&
           agree(Cubic::fromLine(a.p0(), a.p3()), Cubic::fromLine(b.p0(), b.p3()));
}

/** From one place where both have a vertex to the next. */
bool runTogether(const Ray &mine, const Ray &theirs, bool straightIsShared)
{
    return mine.end && theirs.end && partnerAt(*mine.end) == theirs.end &&
           (agree(mine.curve, theirs.curve) || (straightIsShared && areSameLine(mine.curve, theirs.curve)));
}

/** Of the stretch that a ray begins, which an outline runs along from the vertex if isOutgoing. */
bool positionOf(const Ray &ray, bool isOutgoing, const FilledSides &sides, const Corner &other,
                Position &position)
{
    for (const Ray *theirs : { &other.out, &other.in }) {
        if (!runTogether(ray, *theirs, sides.straightIsShared))
            continue;
        const bool sameWay = isOutgoing == (theirs == &other.out);
        position =
            sameWay == (sides.ownRight == sides.otherRight) ? Position::AlongSame : Position::AlongOpposite;
        return true;
    }
    const std::optional<bool> isInside = other.holds(ray);
    if (isInside)
        position = *isInside ? Position::Inside : Position::Outside;
    return isInside.has_value();
}

/** Of both stretches at a corner. */
bool positionsOf(const Corner &own, const FilledSides &sides, const Corner &other, Positions &positions)
{
    return positionOf(own.in, false, sides, other, positions.before) &&
           positionOf(own.out, true, sides, other, positions.after);
}

FilledSides seenByOther(const FilledSides &sides)
{
    return { sides.otherRight, sides.ownRight, sides.straightIsShared };
}

/** Of an outline that passes a corner of the other on one side; none where that is not sure. */
std::optional<Position> positionBeside(const Corner &own, const Corner &other)
{
    Positions lie;
    if (!positionsOf(own, { own.fillsRight, other.fillsRight }, other, lie) || lie.before != lie.after ||
        isAlong(lie.before))
        return std::nullopt;
    return lie.before;
}

bool areTangent(const Corner &a, const Corner &b)
{
    return !areApart(a.in.direction, b.in.direction) || !areApart(a.in.direction, b.out.direction) ||
           !areApart(a.out.direction, b.in.direction) || !areApart(a.out.direction, b.out.direction);
}

/** A place on an outline. */
struct PlaceOnOutline {
    Corner corner;
    const vxSegment *stretch; ///< where the curve that holds it starts
};

/** The place on a curve, by now maybe several that follow each other, where it comes near a point. */
std::optional<PlaceOnOutline> placeOn(const vxSegment &start, const vxPoint &p, bool fillsRight)
{
    constexpr int mostParts = 16;
    const vxSegment *segment = &start;
    for (int i = 0; i < mostParts; ++i) {
        const vxSegment *next = segment->getNext();
        const Cubic c = cubicBetween(*segment, *next);
        const double t = timeOf(c, p);
        if (t > 0 && t < 1) {
            Cubic before, after;
            subdivide(c, t, before, after);
            return PlaceOnOutline{ Corner(before, after, fillsRight), segment };
        }
        segment = next;
    }
    return std::nullopt;
}

} // namespace

vxSegment *partnerAt(const vxSegment &vertex)
{
    const vxCurveLocation *first = vertex.intersection();
    while (first && first->previous)
        first = first->previous;
    vxSegment *partner = nullptr;
    for (const vxCurveLocation *met = first; met; met = met->next) {
        vxSegment *segment = met->segment;
        if (segment == &vertex)
            continue;
        if (!segment || !segment->path || (partner && partner != segment))
            return nullptr;
        partner = segment;
    }
    return partner && partner->path->parent != vertex.path->parent ? partner : nullptr;
}

bool positionsAt(const vxSegment &vertex, const FilledSides &sides, MeetingPositions &positions)
{
    const vxCurveLocation *theirs = vertex.intersection();
    if (theirs->_turn() != 0 && !theirs->next && !theirs->previous) {
        const bool enters = (theirs->_turn() > 0) == sides.otherRight;
        positions.own = enters ? Positions{ Position::Outside, Position::Inside }
                               : Positions{ Position::Inside, Position::Outside };
        positions.partner = nullptr;
        return true;
    }
    vxSegment *partner = partnerAt(vertex);
    if (!partner || partnerAt(*partner) != &vertex)
        return false;
    // A crossing just beside a vertex is moved onto it, which the result would show.
    if (!vertex.point.isClose(partner->point, closeDistance))
        return false;
    const Corner own(vertex, sides.ownRight);
    const Corner other(*partner, sides.otherRight);
    positions.partner = partner;
    return own.isClear() && other.isClear() && positionsOf(own, sides, other, positions.own) &&
           positionsOf(other, seenByOther(sides), own, positions.partners);
}

std::optional<ContactPositions> positionsAtContact(const vxContact &contact, const FilledSides &sides)
{
    const Corner own(*contact.vertex, sides.ownRight);
    const std::optional<PlaceOnOutline> other =
        contact.otherVertex
            ? PlaceOnOutline{ Corner(*contact.otherVertex, sides.otherRight), contact.otherVertex }
            : placeOn(*contact.otherStart, contact.vertex->point, sides.otherRight);
    if (!other || !own.isClear() || !other->corner.isClear())
        return std::nullopt;
    const std::optional<Position> ownPosition = positionBeside(own, other->corner);
    const std::optional<Position> otherPosition = positionBeside(other->corner, own);
    if (!ownPosition || !otherPosition)
        return std::nullopt;
    return ContactPositions{ *ownPosition, *otherPosition, other->stretch, areTangent(own, other->corner) };
}

} // namespace vx
