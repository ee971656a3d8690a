#include "vxarrangement_p.h"

#include "vxcurvevalues_p.h"
#include "vxpath.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vx {

namespace {

/** Of the square on the drawing's longer side: a vertex that moves the area by more stays. */
constexpr double straightFraction = 1e-12;
/** Of the same square: a hair of more area stays. */
constexpr double hairFraction = 1e-10;
/** Snapping distances: what is thicker is no hair, though about a far origin rounding hides its area. */
constexpr double hairThickness = 8;

} // namespace

/** Walks the kept edges of a solved arrangement into closed contours that touch at nodes at most. */
class ContourTracer
{
public:
    explicit ContourTracer(const Arrangement &a)
        : m_a(a), m_firstLeaving(a.m_current.nodes.size() + 1, 0), m_leaving(a.m_selection.kept.size()),
          m_used(a.m_selection.kept.size(), 0), m_position(a.m_current.nodes.size(), -1)
    {
        // Counting sort: the steps that leave node n stand from m_firstLeaving[n] up to m_firstLeaving[n +
        // 1].
        for (const Step &step : kept())
            ++m_firstLeaving[size_t(startOf(step)) + 1];
        std::partial_sum(m_firstLeaving.begin(), m_firstLeaving.end(), m_firstLeaving.begin());
        std::vector<int> next(m_firstLeaving.begin(), m_firstLeaving.end() - 1);
        for (int i = 0; i < int(kept().size()); ++i)
            m_leaving[size_t(next[size_t(startOf(kept()[size_t(i)]))]++)] = i;
        m_walk.reserve(kept().size());
        m_choices.reserve(8);
        m_contours.reserve(4);
    }

    std::vector<Contour> trace()
    {
        for (int i = 0; i < int(kept().size()); ++i) {
            if (!m_used[size_t(i)])
                traceFrom(i);
        }
        return std::move(m_contours);
    }

private:
    const std::vector<Step> &kept() const { return m_a.m_selection.kept; }
    const Edge &edgeOf(const Step &step) const { return m_a.m_current.edges[size_t(step.edge)]; }
    int startOf(const Step &step) const { return step.reversed ? edgeOf(step).node1 : edgeOf(step).node0; }
    int endOf(const Step &step) const { return step.reversed ? edgeOf(step).node0 : edgeOf(step).node1; }

    /** Goes on until the walk is back at its start; loops that close on the way are contours of their own. */
    void traceFrom(int index)
    {
        std::vector<Step> &walk = m_walk;
        walk.clear();
        while (index != -1) {
            const Step &step = kept()[size_t(index)];
            m_used[size_t(index)] = 1;
            m_position[size_t(startOf(step))] = int(walk.size());
            walk.push_back(step);
            const int node = endOf(step);
            if (m_position[size_t(node)] != -1) {
                closeLoop(walk, m_position[size_t(node)]);
                if (walk.empty())
                    return;
            }
            index = nextAt(node, walk.back());
        }
        for (const Step &step : walk) // only an unbalanced node ends a walk early
            m_position[size_t(startOf(step))] = -1;
    }

    void closeLoop(std::vector<Step> &walk, int first)
    {
        Contour loop(walk.begin() + first, walk.end());
        for (const Step &step : loop)
            m_position[size_t(startOf(step))] = -1;
        walk.resize(size_t(first));
        if (!isHair(loop))
            m_contours.push_back(std::move(loop));
    }

    /**
     * Whether a loop encloses nothing but what snapping left between two stretches that run along each other:
     * cut at different places, they were not made one.
     */
    bool isHair(const Contour &loop) const
    {
        double area = 0;
        double length = 0;
        for (const Step &step : loop) {
            const Cubic &c = edgeOf(step).inFrame;
            area += step.reversed ? -vx::signedArea(c) : vx::signedArea(c);
            length += c.p0().getDistance(c.p1()) + c.p1().getDistance(c.p2()) + c.p2().getDistance(c.p3());
        }
        const double square = std::pow(m_a.m_extent * m_a.m_frame.scale, 2);
        const double rounding = 1e-15 * square * double(loop.size());
        const double most = std::min(m_a.m_snapping * length + rounding, hairFraction * square);
        return std::fabs(area) <= most && areaAroundItself(loop) <= hairThickness * m_a.m_snapping * length;
    }

    double areaAroundItself(const Contour &loop) const
    {
        const vxPoint start = m_a.m_current.nodes[size_t(startOf(loop.front()))].inFrame;
        double area = 0;
        for (const Step &step : loop) {
            const double part = signedAreaAround(start, edgeOf(step).inFrame);
            area += step.reversed ? -part : part;
        }
        return std::fabs(area);
    }

    /**
     * The unused step out of a node that closes the tightest wedge of inside, which lies right of the step
     * that arrives: the first one met when turning from where that came from through its right side.
     *
     *            in          y points down: angles grow clockwise on screen, so the turn from the way back
     *            |  . . .    through the right of the arriving step goes by falling angles.
     *            v . inside
     *            o----> out
     */
    int nextAt(int node, const Step &arriving)
    {
        m_choices.clear();
        for (int k = m_firstLeaving[size_t(node)]; k < m_firstLeaving[size_t(node) + 1]; ++k) {
            if (!m_used[size_t(m_leaving[size_t(k)])])
                m_choices.push_back(m_leaving[size_t(k)]);
        }
        if (m_choices.size() < 2)
            return m_choices.empty() ? -1 : m_choices.front();

        double radius = reach(arriving, true);
        for (int i : m_choices)
            radius = std::min(radius, reach(kept()[size_t(i)], false));
        // Roughly first: only turns that come out nearly alike, or nearly none, need the last digits.
        const int choice = tightest(arriving, radius, 16);
        return choice != -1 ? choice : tightest(arriving, radius, finest);
    }

    /**
     * The choice with the least turn, from directions found with so many halvings; -1 where fewer than the
     * finest leave it open.
     */
    int tightest(const Step &arriving, double radius, int halvings) const
    {
        const Direction back = directionAt(arriving, true, radius, halvings);
        int best = -1;
        double leastTurn = 0;
        double leastMargin = 0;
        for (int i : m_choices) {
            const Direction out = directionAt(kept()[size_t(i)], false, radius, halvings);
            double turn = back.angle - out.angle;
            while (turn <= 0)
                turn += 2 * M_PI;
            const double margin = back.margin + out.margin;
            const bool isOpen = turn < margin || turn > 2 * M_PI - margin ||
                                (best != -1 && std::fabs(turn - leastTurn) < margin + leastMargin);
            if (halvings < finest && (isOpen || !(margin < 1)))
                return -1;
            if (best == -1 || turn < leastTurn) {
                best = i;
                leastTurn = turn;
                leastMargin = margin;
            }
        }
        return best;
    }

    /** The step's curve as seen from the node at one of its ends. */
    Cubic seenFrom(const Step &step, bool atEnd) const
    {
        return step.reversed != atEnd ? edgeOf(step).inFrame.reversed() : edgeOf(step).inFrame;
    }

    /** How far from the node directions may be compared. */
    double reach(const Step &step, bool atEnd) const
    {
        const Cubic c = seenFrom(step, atEnd);
        return placeAt(c, 0.25).getDistance(c.p0());
    }

    /** margin: bound of how far more halvings can still turn it. */
    struct Direction {
        double angle, margin;
    };
    static constexpr int finest = 50;

    /**
     * Direction in which the curve passes the circle around the node: at a distance curves that start alike
     * part.
     */
    Direction directionAt(const Step &step, bool atEnd, double radius, int halvings) const
    {
        const Cubic c = seenFrom(step, atEnd);
        if (halvings < finest && edgeOf(step).line) {
            // Wherever the circle is, but for rounding: places are good to some 1e-12.
            const vxPoint chord = c.p3().subtract(c.p0());
            return { std::atan2(chord.y, chord.x), 1e-10 / radius };
        }
        double lo = 0;
        double hi = 0.25;
        for (int i = 0; i < halvings; ++i) {
            const double middle = (lo + hi) / 2;
            (placeAt(c, middle).getDistance(c.p0()) < radius ? lo : hi) = middle;
        }
        const vxPoint d = placeAt(c, hi).subtract(c.p0());
        // The place moves by (hi - lo) |B'| at most. Seen from the node that turns it by less than twice that
        // over its distance while the quotient is small; the rest of the factor is for rounding.
        return { std::atan2(d.y, d.x), 4 * (hi - lo) * greatestSpeed(c) / d.getLength() };
    }

    const Arrangement &m_a;
    std::vector<int> m_firstLeaving;
    std::vector<int> m_leaving;
    std::vector<int> m_choices; ///< scratch of nextAt
    std::vector<Step> m_walk;   ///< scratch of traceFrom
    std::vector<char> m_used;
    /** Per node: place in the walk of the step that leaves it, -1 for none. */
    std::vector<int> m_position;
    std::vector<Contour> m_contours;
};

/**
 * Makes a path of a traced contour, with parts of one curve joined again and untouched contours as they were.
 */
class ContourBuilder
{
public:
    ContourBuilder(const Arrangement &a, const Contour &steps) : m_a(a) { joinParts(steps); }

    vxPath *build() const
    {
        vxPath *path = isUntouched() ? contourOf(m_parts.front()).path->clone() : assemble();
        path->setClosed(true);
        path->removeFlags(~0u);
        path->addFlags(path->getArea(false, true) >= 0 ? vxPath::madeClockwise
                                                       : vxPath::madeCounterClockwise);
        return path;
    }

    /** The curves of what build() makes, without making it. */
    std::vector<Cubic> curves() const
    {
        std::vector<Cubic> result;
        result.reserve(m_parts.size());
        if (isUntouched()) {
            const QList<vxSegment *> &segments = contourOf(m_parts.front()).path->_segments();
            for (int i = 0; i < segments.size(); ++i)
                result.push_back(curveFrom(segments, i));
            return result;
        }
        const std::vector<vxSegment> segments = vertices();
        for (size_t i = 0; i < segments.size(); ++i)
            result.push_back(cubicBetween(segments[i], segments[(i + 1) % segments.size()]));
        if (result.size() == 1) {
            result.emplace_back();
            subdivide(result[0], 0.5, result[0], result[1]);
        }
        return result;
    }

private:
    /** Part of an operand's curve; reversed: walked from t1 to t0. */
    struct Part {
        int curve;
        double t0, t1;
        bool reversed;
        int startNode, endNode;
    };

    const ArrangedContour &contourOf(const Part &part) const
    {
        return m_a.m_contours[size_t(m_a.m_curves[size_t(part.curve)].contour)];
    }

    Part partOf(const Step &step) const
    {
        const Edge &edge = m_a.m_current.edges[size_t(step.edge)];
        return { edge.curve,
                 edge.t0,
                 edge.t1,
                 step.reversed,
                 step.reversed ? edge.node1 : edge.node0,
                 step.reversed ? edge.node0 : edge.node1 };
    }

    static bool continues(const Part &a, const Part &b)
    {
        return a.curve == b.curve && a.reversed == b.reversed && (a.reversed ? a.t0 == b.t1 : a.t1 == b.t0);
    }

    static void extend(Part &a, const Part &b)
    {
        (a.reversed ? a.t0 : a.t1) = a.reversed ? b.t0 : b.t1;
        a.endNode = b.endNode;
    }

    void joinParts(const Contour &steps)
    {
        m_parts.reserve(steps.size());
        for (const Step &step : steps) {
            const Part part = partOf(step);
            if (!m_parts.empty() && continues(m_parts.back(), part))
                extend(m_parts.back(), part);
            else
                m_parts.push_back(part);
        }
        if (m_parts.size() > 1 && continues(m_parts.back(), m_parts.front())) {
            extend(m_parts.back(), m_parts.front());
            m_parts.erase(m_parts.begin());
        }
    }

    bool isUntouched() const
    {
        const ArrangedContour &contour = contourOf(m_parts.front());
        // Closing an open one would bend the line that closes it by the handles at its ends.
        if (!contour.path->isClosed())
            return false;
        if (int(m_parts.size()) != contour.curveCount ||
            contour.path->_segments().size() != contour.curveCount) // curves without extent were left out
            return false;
        return std::all_of(m_parts.begin(), m_parts.end(), [&](const Part &part) {
            return &contourOf(part) == &contour && part.t0 == 0 && part.t1 == 1 &&
                   m_a.m_current.nodes[size_t(part.startNode)].exact;
        });
    }

    /** The part in the operands' units, in walking direction, before its ends are put on the nodes. */
    Cubic valuesOf(const Part &p) const
    {
        const Cubic &original = m_a.m_curves[size_t(p.curve)].original;
        const Cubic c = p.t0 == 0 && p.t1 == 1 ? original : vx::part(original, p.t0, p.t1);
        return p.reversed ? c.reversed() : c;
    }

    bool isLine(const Part &p) const { return m_a.m_curves[size_t(p.curve)].line; }
    vxPoint chordOf(const Part &p) const
    {
        return m_a.m_current.nodes[size_t(p.endNode)].original.subtract(
            m_a.m_current.nodes[size_t(p.startNode)].original);
    }

    /** Whether two parts make one line: the angle alone would let long ones move the area. */
    bool makeLine(const Part &a, const Part &b) const
    {
        if (!isLine(a) || !isLine(b))
            return false;
        const vxPoint in = chordOf(a);
        const vxPoint out = chordOf(b);
        return in.isCollinear(out) && in.dot(out) > 0 &&
               std::fabs(in.cross(out)) <= straightFraction * m_a.m_extent * m_a.m_extent;
    }

    /** The parts with those that make one line joined. */
    std::vector<Part> straightened() const
    {
        std::vector<Part> parts;
        parts.reserve(m_parts.size());
        for (const Part &p : m_parts) {
            if (!parts.empty() && makeLine(parts.back(), p))
                parts.back().endNode = p.endNode;
            else
                parts.push_back(p);
        }
        if (parts.size() > 1 && makeLine(parts.back(), parts.front())) {
            parts.front().startNode = parts.back().startNode;
            parts.pop_back();
        }
        return parts;
    }

    std::vector<vxSegment> vertices() const
    {
        const std::vector<Part> parts = straightened();
        std::vector<vxSegment> segments;
        segments.reserve(parts.size());
        for (const Part &p : parts)
            segments.emplace_back(m_a.m_current.nodes[size_t(p.startNode)].original, vxPoint(), vxPoint());
        for (size_t i = 0; i < parts.size(); ++i) {
            const Part &p = parts[i];
            if (isLine(p))
                continue;
            const Cubic c = valuesOf(p);
            segments[i].handleOut = c.p1().subtract(c.p0());
            segments[(i + 1) % segments.size()].handleIn = c.p2().subtract(c.p3());
        }
        return segments;
    }

    vxPath *assemble() const
    {
        auto *path = new vxPath(nullptr, true);
        path->_setOutline(vertices());
        // A loop from a point to itself: two segments are what readers of outlines expect.
        if (path->_segments().size() == 1)
            path->getFirstCurve()->divideAtTime(0.5, true);
        return path;
    }

    const Arrangement &m_a;
    std::vector<Part> m_parts;
};

std::vector<Contour> Arrangement::contours() const
{
    return ContourTracer(*this).trace();
}

std::vector<Cubic> Arrangement::curvesOf(const Contour &contour) const
{
    return ContourBuilder(*this, contour).curves();
}

QVector<vxPath *> Arrangement::makePaths(const std::vector<Contour> &contours) const
{
    QVector<vxPath *> paths;
    for (const Contour &contour : contours) {
        vxPath *path = ContourBuilder(*this, contour).build();
        if (path->isEmpty())
            path->release();
        else
            paths.append(path);
    }
    // The container takes its first child for an outer contour.
    const auto outer =
        std::find_if(paths.begin(), paths.end(), [](const vxPath *p) { return p->isClockwise(); });
    if (outer != paths.end())
        std::rotate(paths.begin(), outer, outer + 1);
    return paths;
}

} // namespace vx
