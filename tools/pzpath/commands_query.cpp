#include "area.h"
#include "invocation.h"
#include "picture.h"
#include "toolerror.h"

#include <pzgraphics/vxcurvelocation.h>
#include <pzgraphics/vxpath.h>
#include <pzgraphics/xpath.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

QString pair(const vxPoint &p)
{
    return toText(p.x) + QLatin1Char(' ') + toText(p.y);
}

void runCrossings(const Invocation &in)
{
    const std::unique_ptr<XPath> a = toXPath(in.path(0, "A"));
    const std::unique_ptr<XPath> b = toXPath(in.path(1, "B"));
    const QList<vxCurveLocation *> crossings = a->getCrossings(b.get());
    for (const vxCurveLocation *crossing : crossings)
        printLine(pair(crossing->getPoint()));
    vxCurveLocation::releaseAll(crossings);
}

void runContains(const Invocation &in)
{
    const vxPoint point(in.number(0, "X"), in.number(1, "Y"));
    const bool inside = toXPath(in.path(2, "A"))->contains(point, vxStyle::filled(true));
    printLine(inside ? QStringLiteral("inside") : QStringLiteral("outside"));
}

QJsonObject contourInfo(const vxPath &contour)
{
    return { { "closed", contour.isClosed() },
             { "clockwise", contour.isClockwise() },
             { "segments", contour.getSegments().size() },
             { "length", contour.getLength() },
             { "area", contour.getArea(false, contour.isClosed()) } };
}

QJsonObject boxInfo(const vxRect &box)
{
    return { { "x", box.x }, { "y", box.y }, { "width", box.width }, { "height", box.height } };
}

QJsonObject pathInfo(const PathCommands &commands)
{
    const std::unique_ptr<XPath> path = toXPathAsDrawn(commands);
    QJsonArray rows;
    for (const vxPath *contour : path->children)
        rows << contourInfo(*contour);
    int elements = 0;
    for (const PathCommand &command : commands)
        elements += qMax(1, command.pointCount());
    return { { "elements", elements },
             { "contours", rows },
             { "length", path->getLength() },
             { "area", filledArea(*path) },
             { "bounds", boxInfo(path->getBounds(vxBoundOpt::geometric(), vxStyle())) } };
}

QString contourLine(int number, const QJsonObject &row)
{
    return QStringLiteral("contour %1: %2, %3, segments %4, length %5, area %6")
        .arg(number)
        .arg(row["closed"].toBool() ? "closed" : "open",
             row["clockwise"].toBool() ? "clockwise" : "counter-clockwise")
        .arg(row["segments"].toInt())
        .arg(toText(row["length"].toDouble()), toText(row["area"].toDouble()));
}

void runInfo(const Invocation &in)
{
    const QJsonObject info = pathInfo(in.path(0, "A"));
    if (in.has("json")) {
        printLine(QString::fromUtf8(QJsonDocument(info).toJson().trimmed()));
        return;
    }
    const QJsonArray rows = info["contours"].toArray();
    const QJsonObject box = info["bounds"].toObject();
    printLine(QStringLiteral("elements: %1").arg(info["elements"].toInt()));
    printLine(QStringLiteral("contours: %1").arg(rows.size()));
    for (int i = 0; i < rows.size(); ++i)
        printLine(contourLine(i + 1, rows[i].toObject()));
    printLine(QStringLiteral("length: %1").arg(toText(info["length"].toDouble())));
    printLine(QStringLiteral("area: %1 (even-odd)").arg(toText(info["area"].toDouble())));
    printLine(QStringLiteral("bounds: x %1, y %2, width %3, height %4")
                  .arg(toText(box["x"].toDouble()), toText(box["y"].toDouble()),
                       toText(box["width"].toDouble()), toText(box["height"].toDouble())));
}

void runLength(const Invocation &in)
{
    const PathCommands path = in.path(0, "A");
    printPaths(in, {}, { { path, Ink::result() } });
    printLine(toText(toXPath(path)->getLength()));
}

/** A place on a path and the direction there, a tenth of the path's size long. */
QVector<Shape> placeShapes(const PathCommands &path, const vxRect &bounds, const vxPoint &place,
                           const vxPoint &tangent)
{
    const vxPoint tip = place.add(tangent.multiply(std::max(bounds.width, bounds.height) / 10));
    const PathCommands arrow{ { 'M', { place.toPt() } }, { 'L', { tip.toPt() } } };
    return { { path, Ink::operandA() }, { arrow, Ink::result() } };
}

/** Arc lengths run on from contour to contour, in the order and direction as drawn. */
void runAt(const Invocation &in)
{
    const double offset = in.number(0, "OFFSET");
    const PathCommands commands = in.path(1, "A");
    const std::unique_ptr<XPath> path = toXPathAsDrawn(commands);
    const double length = path->getLength();
    double rest = offset < 0 ? length + offset : offset;
    for (const vxPath *contour : path->children) {
        if (rest >= 0 && rest <= contour->getLength() && contour->_countCurves() > 0) {
            const vxPoint place = contour->getPointAt(rest);
            const vxPoint tangent = contour->getTangentAt(rest);
            const vxRect bounds = path->getBounds(vxBoundOpt::geometric(), vxStyle());
            printPaths(in, {}, placeShapes(commands, bounds, place, tangent));
            printLine(QStringLiteral("point %1").arg(pair(place)));
            printLine(QStringLiteral("tangent %1").arg(pair(tangent)));
            return;
        }
        rest -= contour->getLength();
    }
    throw ToolError{
        QStringLiteral("OFFSET %1 is beyond the length of %2").arg(toText(offset), toText(length))
    };
}

} // namespace

QVector<Command> queryCommands()
{
    return {
        { "crossings", "A B", "points where the outlines pass through each other", 2, 2, Command::NoOption,
          runCrossings },
        { "contains", "X Y A", "inside or outside, by the even-odd rule", 3, 3, Command::NoOption,
          runContains },
        { "info", "A", "contours with direction, length and area; bounds", 1, 1, Command::Json, runInfo },
        { "length", "A", "arc length of all contours", 1, 1, Command::Output, runLength },
        { "at", "OFFSET A", "point and tangent at an arc length, negative from the end", 2, 2,
          Command::Output, runAt },
    };
}
