#include "vxarrangementview.h"

#include "vxarrangement_p.h"

namespace {

/** A fill of two operands as a sum of 1 and 2. */
int codeOf(const vx::Fill &fill)
{
    const int second = fill.count - (fill.first ? 1 : 0);
    return (fill.first ? 1 : 0) + 2 * second;
}

QVector<double> fromFrame(const vx::Frame &frame, const vx::Cubic &c)
{
    QVector<double> values;
    for (const vxPoint &p : { c.p0(), c.p1(), c.p2(), c.p3() }) {
        const vxPoint mapped = frame.fromFrame(p);
        values << mapped.x << mapped.y;
    }
    return values;
}

} // namespace

vxArrangementView vxArrangementView::of(const XPath &path1, const XPath &path2, int op)
{
    vxArrangementView view;
    if (op < vx::Intersect || op > vx::Exclude)
        return view;
    vx::Arrangement arrangement({ &path1, &path2 });
    arrangement.solve(vx::Operation(op));
    const std::vector<int> balances = arrangement.nodeBalances();
    for (size_t i = 0; i < balances.size(); ++i)
        view.nodes.append({ arrangement.nodes()[i].original, balances[i] });
    for (const vx::Edge &edge : arrangement.edges())
        view.stretches.append({ fromFrame(arrangement.frame(), edge.inFrame), edge.node0, edge.node1,
                                codeOf(edge.left), codeOf(edge.right), false, false });
    for (const vx::Step &step : arrangement.selection().kept) {
        Stretch &stretch = view.stretches[step.edge];
        stretch.kept = true;
        stretch.reversed = step.reversed;
    }
    view.area = arrangement.selection().area;
    view.snapping = arrangement.snapping();
    return view;
}
