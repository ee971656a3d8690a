#include "vxarrangement_p.h"

#include "vxintersect_p.h"
#include "vxnumeric_p.h"
#include "vxruntree_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vx {

namespace {

/** In units of the frame: a curve met this near to the ray's start leaves open on which side it lies. */
constexpr double undecidedDistance = 1e-9;

/**
 * In units of the frame: boxes are widened by this, so that what is taken for off the ray, or for in front of
 * its start, is so for the exact test too. Far above rounding and the distance that leaves a side open.
 */
constexpr double boxMargin = 1e-8;

/** Places along an edge that a ray may start from, in the order in which they are tried. */
constexpr double startTimes[] = { 0.5, 0.381966, 0.618034, 0.236068, 0.763932, 0.145898, 0.854102 };

/** A part of an edge that is monotone in the coordinate along which levels are counted. */
struct Piece {
    int edge;
    double t0, t1;
    double value0, value1;
    /** Range of the edge's control points in the other coordinate. */
    double least, greatest;
};

/**
 * Rays from edges along one axis, towards smaller values. Axis is the coordinate that a ray keeps (its
 * level): 1 for rays towards -x, 0 for rays towards -y.
 *
 * Stretches of a contour that follow each other and lie in front of the ray's start with all their control
 * points count as much as the chord from the first one's start to the last one's end: each counts +1 or -1
 * for the ends that it has on two sides of the level, and what is between cancels. A closed contour in front
 * of the start counts nothing. So only stretches whose boxes hold the start are looked at one by one.
 */
template <int Axis>
class Rays
{
public:
    Rays(const std::vector<Edge> &edges, const std::vector<Node> &nodes, const std::vector<Link> &links,
         const std::vector<Box> &boxes, const RunTree &tree)
        : m_edges(edges), m_nodes(nodes), m_links(links), m_boxes(boxes), m_tree(tree)
    {
    }

    /**
     * Counts what lies between infinity and the point start of an edge at time t: calls
     * metEdge(edge, rising), and metRow(contour, rising) for stretches in a row that were not looked at.
     * False when a piece passes so near to that point that its side is left open. Contours are those whose
     * boxes hold the start, and any others, which count nothing.
     */
    template <typename MetEdge, typename MetRow>
    bool cast(int fromEdge, double t, const vxPoint &start, const std::vector<int> &contours,
              MetEdge &&metEdge, MetRow &&metRow) const
    {
        const double level = along(start);
        const double limit = across(start);
        const double levelLow = level - boxMargin, levelHigh = level + boxMargin;
        const double limitLow = limit - boxMargin, limitHigh = limit + boxMargin;
        // Whether a box holds the start; if it lies in front of it, its stretches are counted here.
        const auto holdsStart = [&](const Box &box, int first, int last) {
            if (levelHigh < lowest(box) || levelLow > highest(box) || limitHigh < nearest(box))
                return false;
            if (limitLow <= farthest(box))
                return true;
            const bool startsBeyond = along(m_nodes[size_t(m_links[size_t(first)].node0)].inFrame) > level;
            const bool endsBeyond = along(m_nodes[size_t(m_links[size_t(last)].node1)].inFrame) > level;
            if (startsBeyond != endsBeyond)
                metRow(m_links[size_t(first)].contour, endsBeyond);
            return false;
        };
        bool decided = true;
        m_tree.walk(
            contours, [&](const RunTree::Run &run) { return holdsStart(run.box, run.first, run.last); },
            [&](int link) {
                const int edge = m_links[size_t(link)].edge;
                const Box &box = m_boxes[size_t(link)]; // of the edge, where it has one
                if (holdsStart(box, link, link) && edge != -1)
                    decided &= lookAt(edge, box, fromEdge, t, level, limit, metEdge);
            });
        return decided;
    }

private:
    static double along(const vxPoint &p) { return Axis == 1 ? p.y : p.x; }
    static double across(const vxPoint &p) { return Axis == 1 ? p.x : p.y; }
    static double lowest(const Box &box) { return Axis == 1 ? box.minY : box.minX; }
    static double highest(const Box &box) { return Axis == 1 ? box.maxY : box.maxX; }
    static double nearest(const Box &box) { return Axis == 1 ? box.minX : box.minY; }
    static double farthest(const Box &box) { return Axis == 1 ? box.maxX : box.maxY; }

    /** Counts the pieces of one edge between infinity and the ray's start; false as cast() gives it. */
    template <typename MetEdge>
    bool lookAt(int e, const Box &box, int fromEdge, double t, double level, double limit,
                MetEdge &metEdge) const
    {
        const Edge &edge = m_edges[size_t(e)];
        if (e == fromEdge && (edge.line || isMonotone(edge.inFrame)))
            return true; // its one piece is where the ray starts
        double times[4];
        const int count = edge.line ? wholeCurve(times) : monotoneTimes(edge.inFrame, times);
        bool decided = true;
        double end = value(edge.inFrame, times[0]);
        for (int i = 0; i < count; ++i) {
            const Piece piece{
                e, times[i], times[i + 1], end, value(edge.inFrame, times[i + 1]), nearest(box), farthest(box)
            };
            end = piece.value1;
            // Half-open, so that a vertex on the level counts once, or twice where the outline turns back.
            if (level < std::min(piece.value0, piece.value1) || level >= std::max(piece.value0, piece.value1))
                continue;
            if (e == fromEdge && piece.t0 < t && t < piece.t1)
                continue;
            const double off = limit - crossing(piece, level, limit);
            if (std::fabs(off) < undecidedDistance)
                decided = false;
            if (off > 0)
                metEdge(e, piece.value1 > piece.value0);
        }
        return decided;
    }

    /** Exact at the ends, so that neighbouring edges meet on one level. */
    double value(const Cubic &c, double t) const
    {
        if (t == 0 || t == 1)
            return c.v[t == 0 ? Axis : 6 + Axis];
        return along(placeAt(c, t));
    }

    static int wholeCurve(double times[4])
    {
        times[0] = 0;
        times[1] = 1;
        return 1;
    }

    /**
     * Whether a curve is surely one piece, for its control values rise or fall by a good part each. The
     * derivative's double root that rounding may take for a real one is then well outside [0, 1].
     */
    static bool isMonotone(const Cubic &c)
    {
        const double q0 = c.v[Axis], q1 = c.v[2 + Axis], q2 = c.v[4 + Axis], q3 = c.v[6 + Axis];
        const auto steps = std::minmax({ q1 - q0, q2 - q1, q3 - q2 });
        constexpr double least = 1e-3;
        constexpr double leastPart = 1e-3;
        return steps.first > 0 ? steps.first > least && steps.first > leastPart * steps.second
                               : steps.second < -least && steps.second < leastPart * steps.first;
    }

    /**
     * Times between which the level coordinate is monotone, 0 and 1 among them; returns the number of pieces.
     */
    int monotoneTimes(const Cubic &c, double times[4]) const
    {
        const double q0 = c.v[Axis], q1 = c.v[2 + Axis], q2 = c.v[4 + Axis], q3 = c.v[6 + Axis];
        double roots[2];
        const int found =
            solveQuadratic(3 * (q1 - q2) - q0 + q3, 2 * (q0 + q2) - 4 * q1, q1 - q0, roots, 0, 1);
        if (found == 2 && roots[0] > roots[1])
            std::swap(roots[0], roots[1]);
        times[0] = 0;
        int count = 1;
        for (int i = 0; i < found; ++i) {
            if (roots[i] > times[count - 1] && roots[i] < 1)
                times[count++] = roots[i];
        }
        times[count] = 1;
        return count;
    }

    /** Where a piece meets the level, across it; only as exact as its comparison with limit needs. */
    double crossing(const Piece &piece, double level, double limit) const
    {
        const Edge &edge = m_edges[size_t(piece.edge)];
        const Cubic &c = edge.inFrame;
        if (piece.greatest < limit - undecidedDistance)
            return piece.greatest;
        if (piece.least > limit + undecidedDistance)
            return piece.least;
        if (edge.line)
            return across(c.p0()) +
                   (across(c.p3()) - across(c.p0())) * (level - piece.value0) / (piece.value1 - piece.value0);
        const double t = timeAtLevel(c, piece, level);
        return across(placeAt(c, t));
    }

    /** Bisection with Newton steps: the piece is monotone, so the bracket always holds the one root. */
    double timeAtLevel(const Cubic &c, const Piece &piece, double level) const
    {
        const bool rising = piece.value1 > piece.value0;
        double lo = piece.t0;
        double hi = piece.t1;
        double t = lo + (hi - lo) * (level - piece.value0) / (piece.value1 - piece.value0);
        for (int i = 0; i < 60 && hi - lo > 1e-16; ++i) {
            const double off = value(c, t) - level;
            if (off == 0)
                break;
            ((off > 0) == rising ? hi : lo) = t;
            double next = t - off / along(velocityAt(c, t));
            if (!(next > lo && next < hi))
                next = (lo + hi) / 2;
            if (std::fabs(next - t) < 1e-16)
                break;
            t = next;
        }
        return t;
    }

    const std::vector<Edge> &m_edges;
    const std::vector<Node> &m_nodes;
    const std::vector<Link> &m_links;
    const std::vector<Box> &m_boxes; ///< per link
    const RunTree &m_tree;
};

/** Windings of the operands at a point; clearing costs what was added. */
class Windings
{
public:
    explicit Windings(const std::vector<char> &evenOdd) : m_evenOdd(evenOdd), m_windings(evenOdd.size())
    {
        m_touched.reserve(evenOdd.size());
    }

    void clear()
    {
        for (int operand : m_touched)
            m_windings[size_t(operand)] = Winding();
        m_touched.clear();
    }
    void add(int operand, int count)
    {
        Winding &winding = m_windings[size_t(operand)];
        if (!winding.touched) {
            winding.touched = true;
            m_touched.push_back(operand);
        }
        winding.number += count;
    }
    /** Which operands are filled there. */
    Fill fill() const
    {
        Fill fill;
        for (int operand : m_touched) {
            const int number = m_windings[size_t(operand)].number;
            const bool filled = m_evenOdd[size_t(operand)] ? number % 2 != 0 : number != 0;
            fill.count += int(filled);
            fill.first |= operand == 0 && filled;
        }
        return fill;
    }

private:
    struct Winding {
        int number = 0;
        bool touched = false;
    };

    const std::vector<char> &m_evenOdd;
    std::vector<Winding> m_windings;
    std::vector<int> m_touched;
};

/**
 * The contours that a ray has to look at. Edges that follow each other mostly start in the boxes of the same
 * ones, so these are sought for a row of edges together where they are not too many.
 */
class ContoursAround
{
public:
    ContoursAround(const std::vector<Edge> &edges, const RunTree &tree)
        : m_edges(edges), m_tree(tree), m_areAll(tree.contourCount() <= fewContours)
    {
        if (m_areAll) {
            m_found.resize(size_t(tree.contourCount()));
            std::iota(m_found.begin(), m_found.end(), 0);
        }
    }

    /** Those whose boxes hold the start of a ray from an edge, and others. To be asked for edges in order. */
    const std::vector<int> &of(int edge, const vxPoint &start)
    {
        if (m_areAll)
            return m_found;
        if (edge >= m_rowEnd)
            m_areFew = m_tree.findContours(boxOfRow(edge), 2 * boxMargin, m_found);
        if (!m_areFew)
            m_tree.findContours({ start.x, start.y, start.x, start.y }, 2 * boxMargin, m_found);
        return m_found;
    }

private:
    static constexpr int rowLength = 16;
    /** Up to here looking at all costs no more than seeking them. */
    static constexpr int fewContours = 8;

    Box boxOfRow(int first)
    {
        m_rowEnd = std::min(first + rowLength, int(m_edges.size()));
        Box box = hullBox(m_edges[size_t(first)].inFrame);
        for (int i = first + 1; i < m_rowEnd; ++i) {
            const Box other = hullBox(m_edges[size_t(i)].inFrame);
            box = { std::min(box.minX, other.minX), std::min(box.minY, other.minY),
                    std::max(box.maxX, other.maxX), std::max(box.maxY, other.maxY) };
        }
        return box;
    }

    const std::vector<Edge> &m_edges;
    const RunTree &m_tree;
    bool m_areAll;
    bool m_areFew = false; ///< for the row that ends before m_rowEnd
    int m_rowEnd = 0;
    std::vector<int> m_found;
};

bool areSame(const Node &a, const Node &b)
{
    return a.inFrame == b.inFrame;
}

bool areSame(const Edge &a, const Edge &b)
{
    return a.node0 == b.node0 && a.node1 == b.node1 && a.line == b.line && a.firstShare == b.firstShare &&
           a.shareCount == b.shareCount && std::equal(a.inFrame.v, a.inFrame.v + 8, b.inFrame.v);
}

bool areSame(const Share &a, const Share &b)
{
    return a.operand == b.operand && a.count == b.count;
}

bool areSame(const Link &a, const Link &b)
{
    return a.contour == b.contour && a.node0 == b.node0 && a.node1 == b.node1 && a.edge == b.edge;
}

bool areSame(const Box &a, const Box &b)
{
    return a.minX == b.minX && a.minY == b.minY && a.maxX == b.maxX && a.maxY == b.maxY;
}

template <typename T>
bool areSame(const std::vector<T> &a, const std::vector<T> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const T &x, const T &y) { return areSame(x, y); });
}

} // namespace

void Arrangement::findSides()
{
    const RunTree tree(m_linkBoxes, m_linkStarts);
    const Rays<1> towardsLeft(m_edges, m_nodes, m_links, m_linkBoxes, tree);
    const Rays<0> towardsTop(m_edges, m_nodes, m_links, m_linkBoxes, tree);
    ContoursAround around(m_edges, tree);
    Windings windings(m_evenOdd);
    const auto addShares = [&](const Edge &edge, int factor) {
        for (int i = 0; i < edge.shareCount; ++i) {
            const Share &share = m_shares[size_t(edge.firstShare + i)];
            windings.add(share.operand, share.count * factor);
        }
    };

    for (int e = 0; e < int(m_edges.size()); ++e) {
        Edge &edge = m_edges[size_t(e)];
        // A clockwise outline rises (to smaller y) on its left and runs to larger x at its top: each counts
        // +1 there.
        bool sideways = true;
        vxPoint tangent;
        for (double t : startTimes) {
            tangent = velocityAt(edge.inFrame, t);
            sideways = std::fabs(tangent.y) >= std::fabs(tangent.x);
            windings.clear();
            const auto metEdge = [&](int met, bool rising) {
                addShares(m_edges[size_t(met)], rising == sideways ? -1 : 1);
            };
            const auto metRow = [&](int contour, bool rising) {
                windings.add(m_contours[size_t(contour)].operand, rising == sideways ? -1 : 1);
            };
            const vxPoint start = placeAt(edge.inFrame, t);
            const std::vector<int> &contours = around.of(e, start);
            const bool decided = sideways ? towardsLeft.cast(e, t, start, contours, metEdge, metRow)
                                          : towardsTop.cast(e, t, start, contours, metEdge, metRow);
            if (decided && (tangent.x != 0 || tangent.y != 0))
                break;
        }
        // The side that the ray leaves by is the left one where the edge itself would count +1.
        const bool countsPositive = sideways ? tangent.y < 0 : tangent.x > 0;
        Fill &near = countsPositive ? edge.left : edge.right;
        Fill &far = countsPositive ? edge.right : edge.left;
        near = windings.fill();
        addShares(edge, countsPositive ? 1 : -1);
        far = windings.fill();
    }
}

/**
 * Takes the sides that were found before where another snapping distance made no difference to anything that
 * rays meet, as when all ends that it joins lie on one another; false where it did.
 */
bool Arrangement::takeSides()
{
    const Pieces &earlier = m_earlier;
    if (earlier.edges.empty() || m_linkStarts != earlier.linkStarts || !areSame(m_nodes, earlier.nodes) ||
        !areSame(m_edges, earlier.edges) || !areSame(m_links, earlier.links) ||
        !areSame(m_linkBoxes, earlier.linkBoxes) || !areSame(m_shares, earlier.shares))
        return false;
    for (size_t e = 0; e < m_edges.size(); ++e) {
        m_edges[e].left = earlier.edges[e].left;
        m_edges[e].right = earlier.edges[e].right;
    }
    return true;
}

} // namespace vx
