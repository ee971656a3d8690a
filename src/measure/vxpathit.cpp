#include "vxpathit.h"
#include "vxflatten_p.h"

#include <cmath>
#include <limits>

namespace {

void appendParts(vxPathIt &it, const vx::Cubic &curve, int index, double minT, double maxT,
                 const vx::Flattening &how)
{
    auto append = [&](const vx::Cubic &piece, double time, double chord) {
        it.length += chord;
        it.parts.append({ it.length, vx::toValues(piece), index, time });
    };
    vx::visitFlatPieces(curve, minT, maxT, how, append);
}

} // namespace

vxPathIt::vxPathIt(const vxPath *path, double flatness, int maxRecursion, bool ignoreStraight,
                   const vxMatrix *matrix)
{
    if (!path)
        return;
    const vx::Flattening how = { flatness, vx::Flattening::spanFor(maxRecursion), ignoreStraight };
    vx::visitCurves(*path, matrix,
                    [&](int index, const vx::Cubic &curve) { appendParts(*this, curve, index, 0, 1, how); });
}

void vxPathIt::computeParts(const QVector<double> &values, int index, double minT, double maxT,
                            double flatness, double minSpan, bool ignoreStraight)
{
    // With a span that halving never comes to, or that is no number, it would not end.
    constexpr double mostParts = 1 << 20;
    const double range = maxT - minT;
    const double least = std::isfinite(range) ? range / mostParts : std::numeric_limits<double>::infinity();
    vx::Cubic curve;
    if (vx::toCubic(values, curve))
        appendParts(*this, curve, index, minT, maxT,
                    { flatness, minSpan > least ? minSpan : least, ignoreStraight });
}
