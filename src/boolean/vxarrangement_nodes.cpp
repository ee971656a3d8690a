#include "vxarrangement_p.h"
#include "vxclusters_p.h"

#include <algorithm>

namespace vx {

/** Makes nodes of end points within the snapping distance and moves the stretches' ends onto them. */
void Arrangement::joinEnds(std::vector<Edge> &stretches)
{
    makeNodes(stretches);
    moveOntoNodes(stretches);
}

/** Makes the nodes, and tells every stretch at which of them it starts. */
void Arrangement::makeNodes(std::vector<Edge> &stretches)
{
    std::vector<vxPoint> starts(stretches.size());
    std::transform(stretches.begin(), stretches.end(), starts.begin(),
                   [](const Edge &stretch) { return stretch.inFrame.p0(); });
    const std::vector<int> roots = clusters(starts, m_snapping);
    // A node lies on a vertex of an operand where it holds one, so that vertices stay where they are.
    std::vector<int> stretchAt; // per node: a stretch whose start it is
    stretchAt.reserve(stretches.size());
    for (int i = 0; i < int(stretches.size()); ++i) {
        Edge &stretch = stretches[size_t(i)];
        const int root = roots[size_t(i)];
        if (root == i) {
            stretch.node0 = int(stretchAt.size());
            stretchAt.push_back(i);
            continue;
        }
        stretch.node0 = stretches[size_t(root)].node0;
        int &at = stretchAt[size_t(stretch.node0)];
        if (stretches[size_t(at)].t0 != 0 && stretch.t0 == 0)
            at = i;
    }
    m_current.nodes.clear();
    m_current.nodes.reserve(stretchAt.size());
    for (int i : stretchAt) {
        const Edge &at = stretches[size_t(i)];
        const vxPoint p = at.inFrame.p0();
        m_current.nodes.push_back(
            { p, at.t0 == 0 ? m_curves[size_t(at.curve)].original.p0() : m_frame.fromFrame(p), true });
    }
}

/** Ends every stretch where the next of its contour starts, the last one where the first does. */
void Arrangement::moveOntoNodes(std::vector<Edge> &stretches)
{
    const auto contourOf = [&](size_t i) { return m_curves[size_t(stretches[i].curve)].contour; };
    size_t first = 0;
    double moved = 0;
    for (size_t i = 0; i < stretches.size(); ++i) {
        Edge &stretch = stretches[i];
        const bool isLast = i + 1 == stretches.size() || contourOf(i + 1) != contourOf(i);
        stretch.node1 = stretches[isLast ? first : i + 1].node0;
        if (isLast)
            first = i + 1;
        const vxPoint &to0 = m_current.nodes[size_t(stretch.node0)].inFrame;
        const vxPoint &to1 = m_current.nodes[size_t(stretch.node1)].inFrame;
        const vxPoint p0 = stretch.inFrame.p0();
        const vxPoint p3 = stretch.inFrame.p3();
        if (p0 == to0 && p3 == to1)
            continue;
        if (p0 != to0)
            m_current.nodes[size_t(stretch.node0)].exact = false;
        moved += p0.getDistance(p3) * (p0.getDistance(to0) + p3.getDistance(to1)) / 2;
        stretch.inFrame = withEnds(stretch.inFrame, to0, to1);
    }
    m_movedArea = { moved, moved };
}

} // namespace vx
