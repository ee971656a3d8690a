// Cuts an open line at the outline of a shape: the pieces inside, and where the line crosses.

#include "svg.h"

#include <pzgraphics/pzpath.h>
#include <pzgraphics/vxcurvelocation.h>
#include <pzgraphics/xpath.h>

#include <QTextStream>

#include <memory>

int main(int argc, char **argv)
{
    PZPath river;
    river.moveTo(QPointF(-40, 60));
    river.cubicTo(QPointF(160, -120), QPointF(140, 380), QPointF(440, 140));
    PZPath country;
    country.ellipse(QRectF(0, 0, 400, 240));
    QPainterPath outline;
    country.toPainterPath(outline);

    XPath line;
    XPath area;
    river.toXPath(line);
    country.toXPath(area);

    // Locations belong to whoever asked for them, with their partners on the other path.
    const QList<vxCurveLocation *> crossings = line.getCrossings(&area);
    QTextStream report(stdout);
    for (const vxCurveLocation *crossing : crossings)
        report << "crosses at " << crossing->getPoint().x << ' ' << crossing->getPoint().y << '\n';
    vxCurveLocation::releaseAll(crossings);

    // Null only for what has no answer, such as uniting an open line with something.
    const std::unique_ptr<XPath> inside(line.intersect(&area));
    if (!inside)
        return 1;
    PZPath pieces;
    pieces.fromXPath(*inside);
    QPainterPath clipped;
    pieces.toPainterPath(clipped);
    return argc == 2 && writeSvg(argv[1], { outline, clipped }) ? 0 : 1;
}
