#include "vxflatten_p.h"
#include "vxpath.h"

namespace {

/** At most eight halvings of a curve. */
constexpr int maxPieces = 256;

} // namespace

void vxPath::flatten(double flatness)
{
    const vx::Flattening how = { flatness, vx::Flattening::spanFor(maxPieces), true };
    QList<vxSegment *> polygon;
    vxPoint end;
    auto append = [&](const vx::Cubic &piece, double, double) {
        polygon.append(new vxSegment(piece.v[0], piece.v[1]));
        end = piece.p3();
    };
    vx::visitCurves(*this, nullptr,
                    [&](int, const vx::Cubic &curve) { vx::visitFlatPieces(curve, 0, 1, how, append); });
    // A closed path comes back to its first point by itself.
    if (!polygon.isEmpty() && !isClosed())
        polygon.append(new vxSegment(end.x, end.y));
    setSegments(polygon);
}
