#include "vxmeetingplaces_p.h"

#include "vxarrangement_p.h"
#include "vxcubic_split_p.h"
#include "vxnearness_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using namespace vxTolerance;

namespace vx {

namespace {

/** In units of the arrangement's frame: a curve that leaves its chord by less is as good as its chord. */
constexpr double flatness = 1e-4;
/** Curves that run together would be halved without end; what was found by then serves. */
constexpr int maxVisits = 4000;
constexpr int maxDepth = 40;
/** Where curves touch, Newton's steps only halve the distance: from a flat part's size to a few last places.
 */
constexpr int maxSteps = 40;
/** In units of the frame: places this near are a meeting. */
constexpr double meetingDistance = 10 * closeDistance;

/**
 * Refines a meeting by Newton's method on B1(t) - B2(u) = 0; false when it leaves the curves or does not
 * meet.
 */
bool refine(const Cubic &c1, const Cubic &c2, double &t, double &u)
{
    const SteppedCurve first(c1);
    const SteppedCurve second(c2);
    TimePair mark{ noTime, noTime };
    int markStep = 0;
    int end = maxSteps;
    for (int i = 0; i < end; ++i) {
        // A step follows from the times alone: once they come back, whole rounds may be left out. That is so
        // where curves that do not meet hold the walk at their ends, and in the last places.
        if (t == mark.t1 && u == mark.t2) {
            end = i + (end - i) % (i - markStep);
            if (i == end)
                break;
        }
        if ((i & (i - 1)) == 0) {
            mark = { t, u };
            markStep = i;
        }
        vxPoint place1, place2, d1, d2;
        first.evaluate(t, place1, d1);
        second.evaluate(u, place2, d2);
        const vxPoint d = place1.subtract(place2);
        if (d.getLength() < 1e-11)
            break;
        const double det = d1.cross(d2);
        if (det == 0)
            break;
        const double nextT = t - d.cross(d2) / det;
        const double nextU = u - d.cross(d1) / det;
        if (!std::isfinite(nextT) || !std::isfinite(nextU))
            break;
        t = std::clamp(nextT, 0.0, 1.0);
        u = std::clamp(nextU, 0.0, 1.0);
    }
    return pointAt(c1, t).isClose(pointAt(c2, u), meetingDistance);
}

struct Halves;

/** A part of a curve, with what each meeting of it asks computed when it is first asked. */
class Part
{
public:
    const Cubic values;
    const double from, to;
    const Box box;
    Halves *halves = nullptr; ///< set when they are first needed

    Part(const Cubic &c, double t0, double t1) : values(c), from(t0), to(t1), box(hullBox(c)) {}
    double middle() const { return (from + to) / 2; }
    double width() const { return to - from; }

    bool isFlat()
    {
        if (m_flat == Flat::Unknown)
            m_flat = isFlatEnough(values, flatness) ? Flat::Yes : Flat::No;
        return m_flat == Flat::Yes;
    }

    /**
     * Whether this curve lies on one side of another's hull, as seen across its own chord, by more than
     * refine() takes for a meeting. Boxes of curves that run side by side overlap everywhere.
     */
    bool liesBeside(const Part &other)
    {
        if (!m_strip.known)
            findStrip();
        const double first = heightOf(other.values, 0);
        if (first > m_strip.highest)
            return heightOf(other.values, 3) > m_strip.highest &&
                   heightOf(other.values, 1) > m_strip.highest && heightOf(other.values, 2) > m_strip.highest;
        return first < m_strip.lowest && heightOf(other.values, 3) < m_strip.lowest &&
               heightOf(other.values, 1) < m_strip.lowest && heightOf(other.values, 2) < m_strip.lowest;
    }

    /**
     * Whether another curve keeps apart from this one though one bends along with the other, by more than
     * refine() takes for a meeting. Let A be the other, B this one and D(s) = A(s) - B(s), e point along B's
     * chord and n across. Where A(s) = B(r), B goes by D(s) from s to r, and so across no more than its
     * steepness, the greatest |n . B'| by the least e . B', times what it goes along. They do not meet where
     * n . D is greater than steepness |e . D| everywhere; control points bound all of these.
     */
    bool keepsBeside(const Part &other)
    {
        if (!m_bend.known)
            findBend();
        if (!m_bend.isSlight)
            return false;
        const vxPoint e = chord();
        const vxPoint n(-e.y, e.x);
        const Cubic &a = other.values;
        const bool opposite = e.dot(other.chord()) < 0;
        double least = std::numeric_limits<double>::infinity();
        double greatest = -least;
        double along = 0;
        for (int i = 0; i < 4; ++i) {
            const int k = opposite ? 6 - 2 * i : 2 * i;
            const vxPoint d(a.v[k] - values.v[2 * i], a.v[k + 1] - values.v[2 * i + 1]);
            const double across = n.dot(d);
            least = std::min(least, across);
            greatest = std::max(greatest, across);
            if (least <= 0 && greatest >= 0)
                return false; // on neither side: what it is compared with below is not negative
            along = std::max(along, std::fabs(e.dot(d)));
        }
        // Twice the margin: what is missing to a meeting counts along and across.
        const double margin = 4 * meetingDistance * (std::fabs(e.x) + std::fabs(e.y));
        return std::max(least, -greatest) > m_bend.steepness * along + margin;
    }

private:
    vxPoint chord() const { return values.p3().subtract(values.p0()); }
    /** Distance of a control point from the chord's line, times the length of the chord. */
    double heightOf(const Cubic &c, int i) const
    {
        return (c.v[2 * i] - values.v[0]) * m_strip.chordY - (c.v[2 * i + 1] - values.v[1]) * m_strip.chordX;
    }

    void findStrip()
    {
        m_strip.known = true;
        m_strip.chordX = values.v[6] - values.v[0];
        m_strip.chordY = values.v[7] - values.v[1];
        const double height1 = heightOf(values, 1);
        const double height2 = heightOf(values, 2);
        const double margin = 2 * meetingDistance * (std::fabs(m_strip.chordX) + std::fabs(m_strip.chordY));
        m_strip.lowest = std::min({ 0.0, height1, height2 }) - margin;
        m_strip.highest = std::max({ 0.0, height1, height2 }) + margin;
    }

    void findBend()
    {
        m_bend.known = true;
        const vxPoint e = chord();
        const vxPoint n(-e.y, e.x);
        const vxPoint steps[] = { values.p1().subtract(values.p0()), values.p2().subtract(values.p1()),
                                  values.p3().subtract(values.p2()) };
        const double leastAlong = std::min({ e.dot(steps[0]), e.dot(steps[1]), e.dot(steps[2]) });
        const double across =
            std::max({ std::fabs(n.dot(steps[0])), std::fabs(n.dot(steps[1])), std::fabs(n.dot(steps[2])) });
        m_bend.isSlight = across < leastAlong;
        m_bend.steepness = across / leastAlong;
    }

    enum class Flat : char { Unknown, No, Yes };
    Flat m_flat = Flat::Unknown;
    /** The chord, and the heights over it between which the hull lies, widened by a margin. */
    struct {
        bool known = false;
        double chordX, chordY, lowest, highest;
    } m_strip;
    struct {
        bool known = false;
        bool isSlight; ///< it goes along its chord all the way, and less across than along
        double steepness;
    } m_bend;
};

/** The two halves of a part. */
struct Halves {
    Part front, back;

    Halves(const Cubic &frontValues, const Cubic &backValues, const Part &whole)
        : front(frontValues, whole.from, whole.middle()), back(backValues, whole.middle(), whole.to)
    {
    }
};

/** Owns the halves of parts, which meet many parts of the other curve each; they stay where they are. */
class HalvesStore
{
public:
    Halves *halve(const Part &part)
    {
        if (m_blocks.empty() || m_blocks.back().size() == blockSize) {
            m_blocks.emplace_back();
            m_blocks.back().reserve(blockSize);
        }
        Cubic front;
        Cubic back;
        split(part.values, 0.5, front, back);
        return &m_blocks.back().emplace_back(front, back, part);
    }

private:
    static constexpr size_t blockSize = 16;

    std::vector<std::vector<Halves>> m_blocks; ///< never grown beyond what was reserved
};

class Halving
{
public:
    Halving(const Cubic &c1, const Cubic &c2, const std::vector<vxPoint> &known, double beside)
        : m_c1(c1), m_c2(c2), m_known(known), m_beside(beside)
    {
    }

    TimePairs run()
    {
        Part first(m_c1, 0, 1);
        Part second(m_c2, 0, 1);
        visit(first, second, 0);
        TimePairs found;
        for (const TimePair &pair : m_found)
            found.append(pair.t1, pair.t2);
        if (m_visits > maxVisits)
            found.cutShort();
        return found;
    }

private:
    void visit(Part &a, Part &b, int depth)
    {
        if (++m_visits > maxVisits || !boxesMeet(a.box, b.box) || a.liesBeside(b) || b.liesBeside(a) ||
            b.keepsBeside(a) || lieBesideKnown(a.box, b.box))
            return;
        if (depth >= maxDepth || (a.isFlat() && b.isFlat())) {
            report(a.middle(), b.middle());
            return;
        }
        const bool halvesFirst = !a.isFlat() && (b.isFlat() || a.width() >= b.width());
        Part &halved = halvesFirst ? a : b;
        if (!halved.halves)
            halved.halves = m_halves.halve(halved);
        for (Part *half : { &halved.halves->front, &halved.halves->back })
            visit(halvesFirst ? *half : a, halvesFirst ? b : *half, depth + 1);
    }

    bool lieBesideKnown(const Box &a, const Box &b) const
    {
        return std::any_of(m_known.begin(), m_known.end(), [&](const vxPoint &p) {
            const auto isBeside = [&](const Box &box) {
                return box.minX >= p.x - m_beside && box.maxX <= p.x + m_beside &&
                       box.minY >= p.y - m_beside && box.maxY <= p.y + m_beside;
            };
            return isBeside(a) && isBeside(b);
        });
    }

    void report(double t, double u)
    {
        if (refine(m_c1, m_c2, t, u) && !wasFound(t, u))
            m_found.insert(firstFrom(t), { t, u });
    }

    bool wasFound(double t, double u) const
    {
        // Twice the margin, so that no rounding leaves out what is compared below.
        for (auto at = firstFrom(t - 2 * timeMargin); at != m_found.end() && at->t1 < t + 2 * timeMargin;
             ++at) {
            if (std::fabs(at->t1 - t) < timeMargin && std::fabs(at->t2 - u) < timeMargin)
                return true;
        }
        return false;
    }

    std::vector<TimePair>::const_iterator firstFrom(double t) const
    {
        return std::lower_bound(m_found.begin(), m_found.end(), t,
                                [](const TimePair &pair, double time) { return pair.t1 < time; });
    }

    const Cubic &m_c1;
    const Cubic &m_c2;
    const std::vector<vxPoint> &m_known;
    const double m_beside;
    HalvesStore m_halves;
    std::vector<TimePair> m_found; ///< sorted by the first time
    int m_visits = 0;
};

} // namespace

TimePairs meetByHalving(const Cubic &c1, const Cubic &c2)
{
    return Halving(c1, c2, {}, 0).run();
}

bool meetOnlyAt(const Cubic &c1, const Cubic &c2, const std::vector<vxPoint> &places)
{
    // Of a thousand: what two curves enclose within this of a place where they meet is nothing.
    constexpr double beside = 1e-2;
    Box box = hullBox(c1);
    extend(box, hullBox(c2));
    const Frame frame = Frame::around(box);
    const Cubic first = frame.toFrame(c1);
    const Cubic second = frame.toFrame(c2);
    const Box firstBox = hullBox(first);
    const Box secondBox = hullBox(second);
    std::vector<vxPoint> known;
    for (const vxPoint &place : places) {
        const vxPoint p = frame.toFrame(place);
        const Box around{ p.x - beside, p.y - beside, p.x + beside, p.y + beside };
        if (boxesMeet(around, firstBox) && boxesMeet(around, secondBox))
            known.push_back(p);
    }
    const TimePairs others = Halving(first, second, known, beside).run();
    const auto isBesideKnown = [&](const vxPoint &p) {
        return std::any_of(known.begin(), known.end(),
                           [&p](const vxPoint &place) { return p.isClose(place, beside); });
    };
    for (int i = 0; i < others.count(); ++i) {
        if (!isBesideKnown(pointAt(first, others[i].t1)))
            return false;
    }
    return !others.isCutShort();
}

} // namespace vx
