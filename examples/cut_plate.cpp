// Cuts two holes and a notch into a plate: a painter path in, a painter path out.

#include "svg.h"

#include <pzgraphics/pzpath.h>

int main(int argc, char **argv)
{
    QPainterPath plate;
    plate.addRoundedRect(QRectF(0, 0, 400, 240), 30, 30);

    PZPath shape;
    shape.fromPainterPath(plate);
    // A painter path's contour ends on its start; the close element is what makes it closed here.
    shape.closeSubpath();

    PZPath holes;
    holes.ellipse(QRectF(50, 70, 100, 100));
    holes.ellipse(QRectF(250, 70, 100, 100));
    shape.subtract(holes);

    PZPath notch;
    notch.addRect(QRectF(180, -20, 40, 100));
    shape.subtract(notch);

    QPainterPath result;
    shape.toPainterPath(result);
    return argc == 2 && writeSvg(argv[1], { plate, result }) ? 0 : 1;
}
