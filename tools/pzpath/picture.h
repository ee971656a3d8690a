#pragma once

#include "pathdata.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVector>

/**
 * How a shape is painted; an invalid colour paints nothing. Filled by the even-odd rule, open contours never.
 */
struct Ink {
    QColor fill;
    QColor stroke;
    double width = 1; ///< of the stroke, in pixels
    bool nodes = false;

    /**
     * The first and second operand, behind the result; a result with its nodes; the second of two results.
     */
    static Ink operandA();
    static Ink operandB();
    static Ink result();
    static Ink otherResult();
};

struct Shape {
    PathCommands path;
    Ink ink;
};

/** From the units of added shapes to pixels. */
struct Mapping {
    double scale = 1;
    QPointF offset;

    QPointF map(const QPointF &p) const { return p * scale + offset; }
};

/** Shapes and captions laid out in pixels, written as PNG or SVG. */
class Picture
{
public:
    explicit Picture(const QSizeF &size) : m_size(size) {}

    /** All shapes together, scaled alike into the cell and centred there; tells how. */
    Mapping add(const QVector<Shape> &shapes, const QRectF &cell);
    /** Text centred on a point of its baseline; height in pixels. */
    void caption(const QPointF &middle, const QString &text, double height);
    /** A line across the picture. */
    void rule(double y);
    /**
     * By the name's suffix (.png, .svg), whole or not at all; throws ToolError. Captions in a PNG need a
     * QGuiApplication.
     */
    void save(const QString &file) const;

private:
    struct Caption {
        QPointF middle;
        QString text;
        double height;
    };

    QByteArray toPng() const;
    QByteArray toSvg() const;

    QSizeF m_size;
    QVector<Shape> m_shapes;
    QVector<Caption> m_captions;
};

/** The size in pixels of a picture of the shapes, and of the cell in it that they fill. */
QSizeF pictureSize(const QVector<Shape> &shapes, QRectF &cell);
/** A picture of one group of shapes, 800 pixels along the longer side, saved to file. */
void savePicture(const QVector<Shape> &shapes, const QString &file);
/** The two operands faint, the results above them. */
QVector<Shape> booleanShapes(const PathCommands &a, const PathCommands &b,
                             const QVector<PathCommands> &results);
/** What the path was faint, what became of it above. */
QVector<Shape> effectShapes(const PathCommands &before, const PathCommands &after);
