// A label with rounded corners and a hand-drawn frame around it, and a pointer with room for its arrow head.

#include "svg.h"

#include <pzgraphics/pzpath.h>

int main(int argc, char **argv)
{
    PZPath label;
    label.addRect(QRectF(0, 0, 300, 120));
    PZPath frame = label;

    label.setCornerRound2(24);

    // A sample every 6 units, moved sideways by up to 8.
    frame.manualPath(frame, 8, 6);

    PZPath pointer;
    pointer.moveTo(QPointF(300, 60));
    pointer.lineTo(QPointF(420, 60));
    // 20 units cut off at the end; where the tip was is kept in the last element's head fields.
    if (!pointer.setLineHead(0, 20))
        return 1;
    const PZPath::PZElement end = pointer.last();
    PZPath head;
    head.addPolygon(
        QPolygonF({ QPointF(end.headX, end.headY), QPointF(end.x, end.y - 10), QPointF(end.x, end.y + 10) }));
    head.closeSubpath();
    pointer.addPath(head, false);

    QVector<QPainterPath> drawing(3);
    label.toPainterPath(drawing[0]);
    frame.toPainterPath(drawing[1]);
    pointer.toPainterPath(drawing[2]);
    return argc == 2 && writeSvg(argv[1], drawing) ? 0 : 1;
}
