#pragma once

#include <QPainterPath>
#include <QString>
#include <QVector>

#include <array>
#include <memory>

class PZPath;
class XPath;
class vxPath;

/** One drawing command with absolute points: M and L use one, C three, Z none. */
struct PathCommand {
    char letter = 'M';
    std::array<QPointF, 3> points;

    int pointCount() const { return letter == 'Z' ? 0 : letter == 'C' ? 3 : 1; }
    QPointF end() const { return points[letter == 'C' ? 2 : 0]; }
};

/** The form between text, engine paths, element paths and painter paths. */
using PathCommands = QVector<PathCommand>;

/**
 * Reads absolute M, L, C and Z. Numbers may be separated by space, commas or nothing where that is
 * unambiguous; a command without a letter repeats the last one (M as L); drawing after Z goes on from the
 * closed contour's start. Throws ToolError, which names what is wrong and at which character (from 1).
 */
PathCommands parsePathData(const QString &text);

/** Shortest digits that give the same double again; -0 as 0. */
QString toText(double value);
/** Every letter and number a token of its own, one space between. */
QString toText(const PathCommands &commands);

/**
 * A compound path as the engine takes its operands: contours turned by the orientation rule. Z drops an end
 * point that is the start exactly and nothing else is merged. Lone moves stay as contours of one segment.
 */
std::unique_ptr<XPath> toXPath(const PathCommands &commands);
/**
 * The same with every contour left in the direction in which it was drawn, for whoever asks for places along
 * it.
 */
std::unique_ptr<XPath> toXPathAsDrawn(const PathCommands &commands);
/** Through the application's own reader, so lines shorter than the merge tolerance vanish. */
PZPath toElements(const PathCommands &commands);
QPainterPath toPainterPath(const PathCommands &commands);

PathCommands commandsOf(const XPath &path);
PathCommands commandsOf(const vxPath &contour);
PathCommands commandsOf(const PZPath &path);

/** Every point p as p * scale + offset. */
PathCommands mapped(PathCommands commands, double scale, const QPointF &offset);
/** The contours that end with Z; the others cannot be filled. */
PathCommands closedContours(const PathCommands &commands);
