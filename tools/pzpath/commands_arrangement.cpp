#include "invocation.h"
#include "operation.h"
#include "picture.h"

#include <pzgraphics/vxarrangementview.h>
#include <pzgraphics/vxcurve.h>
#include <pzgraphics/xpath.h>

#include <cmath>

// Draws the arrangement of two paths: kept stretches green with the inside on their right, the others grey,
// nodes as dots (red where the outline does not close), and beside each stretch what is filled there.

namespace {

/** Beyond this many stretches their captions would cover each other. */
constexpr int mostCaptions = 120;
constexpr double captionHeight = 11;
/** Pixels between a stretch and the captions on its sides. */
constexpr double captionDistance = 11;

PathCommands commandsOf(const vxArrangementView::Stretch &stretch)
{
    const QVector<double> &v = stretch.values;
    return { { 'M', { QPointF(v[0], v[1]) } },
             { 'C', { QPointF(v[2], v[3]), QPointF(v[4], v[5]), QPointF(v[6], v[7]) } } };
}

/** A dot of no extent, drawn by its node alone. */
Shape dot(const vxPoint &p, const QColor &colour)
{
    const QPointF at(p.x, p.y);
    return { { { 'M', { at } }, { 'L', { at } } }, Ink{ QColor(), colour, 2, true } };
}

QVector<Shape> shapesOf(const vxArrangementView &view, const PathCommands &a, const PathCommands &b)
{
    Ink areaA = Ink::operandA();
    Ink areaB = Ink::operandB();
    areaA.stroke = areaB.stroke = QColor();
    QVector<Shape> shapes{ { a, areaA }, { b, areaB } };
    for (const bool kept : { false, true }) {
        for (const vxArrangementView::Stretch &stretch : view.stretches) {
            const Ink ink{ QColor(), kept ? QColor(20, 130, 60) : QColor(150, 150, 150), kept ? 2.5 : 1.0,
                           false };
            if (stretch.kept == kept)
                shapes.append({ commandsOf(stretch), ink });
        }
    }
    for (const vxArrangementView::Node &node : view.nodes)
        shapes << dot(node.point, node.balance == 0 ? QColor(40, 40, 40) : QColor(220, 30, 30));
    return shapes;
}

QString fillText(int filled)
{
    static const char *const texts[] = { "-", "A", "B", "AB" };
    return QLatin1String(texts[filled & 3]);
}

void writeFills(Picture &picture, const Mapping &mapping, const vxArrangementView &view)
{
    for (const vxArrangementView::Stretch &stretch : view.stretches) {
        const vxPoint p = vxCurve::getPoint(stretch.values, 0.5);
        const vxPoint tangent = vxCurve::getTangent(stretch.values, 0.5);
        const QPointF middle = mapping.map(p.toPt()) + QPointF(0, captionHeight / 3);
        // y points down: turned clockwise on screen, the tangent shows to the right.
        const QPointF right = QPointF(-tangent.y, tangent.x) * captionDistance;
        picture.caption(middle + right, fillText(stretch.filledRight), captionHeight);
        picture.caption(middle - right, fillText(stretch.filledLeft), captionHeight);
    }
}

void drawArrangement(const Invocation &in, const vxArrangementView &view, const PathCommands &a,
                     const PathCommands &b)
{
    const QVector<Shape> shapes = shapesOf(view, a, b);
    QRectF cell;
    Picture picture(pictureSize(shapes, cell));
    const Mapping mapping = picture.add(shapes, cell);
    if (view.stretches.size() <= mostCaptions)
        writeFills(picture, mapping, view);
    picture.save(in.value("output"));
}

void runArrangement(const Invocation &in)
{
    const PathCommands a = in.path(0, "A");
    const PathCommands b = in.path(1, "B");
    const QString name = in.arguments().size() > 2 ? in.arguments().at(2) : QStringLiteral("unite");
    const vxArrangementView view =
        vxArrangementView::of(*toXPath(a), *toXPath(b), operationByName(name).code);
    if (in.has("output"))
        drawArrangement(in, view, a, b);
    int kept = 0;
    int odd = 0;
    for (const vxArrangementView::Stretch &stretch : view.stretches)
        kept += stretch.kept;
    for (const vxArrangementView::Node &node : view.nodes)
        odd += node.balance != 0;
    printLine(QStringLiteral("stretches: %1, kept %2").arg(view.stretches.size()).arg(kept));
    printLine(QStringLiteral("nodes: %1, odd %2").arg(view.nodes.size()).arg(odd));
    printLine(QStringLiteral("area: %1").arg(view.area, 0, 'g', 12));
    printLine(QStringLiteral("snapping: %1").arg(view.snapping, 0, 'g', 6));
}

} // namespace

QVector<Command> arrangementCommands()
{
    return {
        { "arrangement", "A B [OP]", "all curves of both cut where they meet, and what of them OP keeps", 2,
          3, Command::Output | Command::WritesText, runArrangement },
    };
}
