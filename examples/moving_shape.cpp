// What a tool does while the mouse moves: a shape that stays where it is, cut by one that follows the mouse.

#include "svg.h"

#include <pzgraphics/pzpath.h>
#include <pzgraphics/vxmatrix.h>
#include <pzgraphics/xpath.h>

#include <memory>

int main(int argc, char **argv)
{
    PZPath drawn;
    drawn.addRect(QRectF(0, 0, 400, 240));
    drawn.ellipse(QRectF(150, 70, 100, 100));
    PZPath stamp;
    stamp.ellipse(QRectF(-40, -40, 80, 80));

    // PZPath's own operations convert both operands for every call. An XPath that is asked again keeps what
    // cleaning it came to, so the one that stays is converted once, for all of the drag.
    XPath standing;
    drawn.toXPath(standing);

    QPainterPath before, preview;
    drawn.toPainterPath(before);
    for (const QPointF &mouse : { QPointF(60, 40), QPointF(130, 80), QPointF(200, 120), QPointF(250, 160) }) {
        XPath moving;
        stamp.toXPath(moving);
        vxMatrix toMouse;
        toMouse.translate(mouse.x(), mouse.y());
        moving.transformContent(&toMouse);
        const std::unique_ptr<XPath> rest(standing.subtract(&moving));
        PZPath elements;
        elements.fromXPath(*rest);
        elements.toPainterPath(preview); // to be drawn before the next move
    }
    return argc == 2 && writeSvg(argv[1], { before, preview }) ? 0 : 1;
}
