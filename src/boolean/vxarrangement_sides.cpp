#include "vxarrangement_p.h"

#include "vxrays_p.h"
#include "vxsamplefractions_p.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
#include <optional>

namespace vx {

namespace {

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

/** Where a ray starts, at a time of an edge. */
struct RayStart {
    double t;
    vxPoint point;
    vxPoint tangent;
    bool sideways; ///< the ray goes towards -x, else towards -y

    RayStart(const Cubic &c, double time)
        : t(time), point(placeAt(c, time)), tangent(velocityAt(c, time)),
          sideways(std::fabs(tangent.y) >= std::fabs(tangent.x))
    {
    }
};

/** The box around some starts. */
class StartBox
{
public:
    void include(const vxPoint &p)
    {
        m_box = { std::min(m_box.minX, p.x), std::min(m_box.minY, p.y), std::max(m_box.maxX, p.x),
                  std::max(m_box.maxY, p.y) };
    }
    bool isEmpty() const { return m_box.minX > m_box.maxX; }
    const Box &box() const { return m_box; }

private:
    Box m_box = emptyBox;
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

bool areSame(const Subdivision &a, const Subdivision &b)
{
    return a.linkStarts == b.linkStarts && areSame(a.nodes, b.nodes) && areSame(a.edges, b.edges) &&
           areSame(a.links, b.links) && areSame(a.linkBoxes, b.linkBoxes) && areSame(a.shares, b.shares);
}

} // namespace

/**
 * Casts the rays of a few edges that follow each other along a contour: these mostly meet the same, which is
 * gathered for them together.
 */
class Arrangement::SideFinder
{
public:
    explicit SideFinder(Arrangement &a)
        : m_a(a), m_areFew(a.m_current.links.size() <= fewLinks),
          m_towardsLeft(a.m_current.edges, a.m_current.nodes, a.m_current.links, a.m_current.linkBoxes),
          m_towardsTop(a.m_current.edges, a.m_current.nodes, a.m_current.links, a.m_current.linkBoxes),
          m_windings(a.m_evenOdd)
    {
        if (m_areFew) {
            m_all.links.resize(a.m_current.links.size());
            std::iota(m_all.links.begin(), m_all.links.end(), 0);
            return;
        }
        for (Ahead *ahead : { &m_left, &m_top }) {
            ahead->links.reserve(32);
            ahead->rows.reserve(32);
        }
        m_tree.emplace(a.m_current.linkBoxes, a.m_current.linkStarts);
        if (m_tree->contourCount() <= fewContours) {
            m_contours.resize(size_t(m_tree->contourCount()));
            std::iota(m_contours.begin(), m_contours.end(), 0);
        }
    }

    void run()
    {
        const int count = int(m_a.m_current.edges.size());
        int end = 0;
        for (int first = 0; first < count; first = end) {
            for (end = first + 1;
                 end < count && end - first < groupSize && contourOf(end) == contourOf(first);)
                ++end;
            findSides(first, end);
        }
    }

private:
    static constexpr int groupSize = 8;
    /** Up to here looking at all costs no more than seeking them. */
    static constexpr int fewContours = 8;
    static constexpr size_t fewLinks = 64;

    int contourOf(int edge) const
    {
        return m_a.m_curves[size_t(m_a.m_current.edges[size_t(edge)].curve)].contour;
    }

    void findSides(int first, int end)
    {
        m_starts.clear();
        StartBox left;
        StartBox top;
        for (int e = first; e < end; ++e) {
            const RayStart &start =
                m_starts.emplace_back(m_a.m_current.edges[size_t(e)].inFrame, sampleFractions[0]);
            (start.sideways ? left : top).include(start.point);
        }
        const Ahead &aheadLeft = gather(true, left, m_left);
        const Ahead &aheadTop = gather(false, top, m_top);
        for (int e = first; e < end; ++e) {
            RayStart &start = m_starts[size_t(e - first)];
            int doubtful = -1;
            if (!cast(e, start, start.sideways ? aheadLeft : aheadTop, &doubtful))
                start = castElsewhere(e, doubtful);
            fill(m_a.m_current.edges[size_t(e)], start);
        }
    }

    /**
     * From the first of the other places that leaves nothing open, or else the last. doubtful: the link that
     * left something open; one that runs along the edge does so wherever a ray starts.
     */
    RayStart castElsewhere(int e, int doubtful)
    {
        const Cubic &c = m_a.m_current.edges[size_t(e)].inFrame;
        for (size_t k = 1;; ++k) {
            const RayStart start(c, sampleFractions[k]);
            const bool isLast = k + 1 == std::size(sampleFractions);
            if (!isLast && doubtful != -1 && leavesOpen(doubtful, e, start))
                continue;
            StartBox box;
            box.include(start.point);
            const Ahead &ahead = gather(start.sideways, box, m_alone);
            if (cast(e, start, ahead, isLast ? nullptr : &doubtful) || isLast)
                return start;
        }
    }

    bool leavesOpen(int link, int e, const RayStart &start) const
    {
        return start.sideways ? m_towardsLeft.leavesOpen(link, e, start.t, start.point)
                              : m_towardsTop.leavesOpen(link, e, start.t, start.point);
    }

    /** What is ahead of rays from within a box, gathered in the list where it is not known. */
    const Ahead &gather(bool sideways, const StartBox &starts, Ahead &ahead)
    {
        if (m_areFew)
            return m_all;
        if (starts.isEmpty())
            return ahead;
        if (m_tree->contourCount() > fewContours)
            m_tree->findContours(starts.box(), 2 * boxMargin, m_contours);
        if (sideways)
            m_towardsLeft.gather(starts.box(), *m_tree, m_contours, ahead);
        else
            m_towardsTop.gather(starts.box(), *m_tree, m_contours, ahead);
        return ahead;
    }

    /** Finds the windings where a ray starts; false when these are in doubt. doubtful: see Rays. */
    bool cast(int e, const RayStart &start, const Ahead &ahead, int *doubtful)
    {
        // A clockwise outline rises (to smaller y) on its left and runs to larger x at its top: each counts
        // +1 there.
        m_windings.clear();
        const auto metEdge = [&](int met, bool rising) {
            addShares(m_a.m_current.edges[size_t(met)], rising == start.sideways ? -1 : 1);
        };
        const auto metRow = [&](int contour, bool rising) {
            m_windings.add(m_a.m_contours[size_t(contour)].operand, rising == start.sideways ? -1 : 1);
        };
        const bool decided =
            start.sideways ? m_towardsLeft.cast(e, start.t, start.point, ahead, metEdge, metRow, doubtful)
                           : m_towardsTop.cast(e, start.t, start.point, ahead, metEdge, metRow, doubtful);
        return decided && (start.tangent.x != 0 || start.tangent.y != 0);
    }

    void addShares(const Edge &edge, int factor)
    {
        for (int i = 0; i < edge.shareCount; ++i) {
            const Share &share = m_a.m_current.shares[size_t(edge.firstShare + i)];
            m_windings.add(share.operand, share.count * factor);
        }
    }

    /** The side that the ray leaves by is the left one where the edge itself would count +1. */
    void fill(Edge &edge, const RayStart &start)
    {
        const bool countsPositive = start.sideways ? start.tangent.y < 0 : start.tangent.x > 0;
        Fill &near = countsPositive ? edge.left : edge.right;
        Fill &far = countsPositive ? edge.right : edge.left;
        near = m_windings.fill();
        addShares(edge, countsPositive ? 1 : -1);
        far = m_windings.fill();
    }

    Arrangement &m_a;
    bool m_areFew;
    std::optional<RunTree> m_tree; ///< none for few links
    const Rays<1> m_towardsLeft;
    const Rays<0> m_towardsTop;
    Windings m_windings;
    std::vector<int> m_contours;    ///< to be looked at
    std::vector<RayStart> m_starts; ///< of a group
    Ahead m_all, m_left, m_top, m_alone;
};

void Arrangement::findSides()
{
    SideFinder(*this).run();
}

/**
 * Takes the sides that were found before where another snapping distance made no difference to anything that
 * rays meet, as when all ends that it joins lie on one another; false where it did.
 */
bool Arrangement::takeSides()
{
    if (m_earlier.edges.empty() || !areSame(m_current, m_earlier))
        return false;
    for (size_t e = 0; e < m_current.edges.size(); ++e) {
        m_current.edges[e].left = m_earlier.edges[e].left;
        m_current.edges[e].right = m_earlier.edges[e].right;
    }
    return true;
}

} // namespace vx
