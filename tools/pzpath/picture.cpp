#include "picture.h"

#include "textfile.h"
#include "toolerror.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>

namespace {

const char *const fontFamily = "DejaVu Sans";
constexpr double pictureSide = 800;
constexpr double pictureMargin = 24;

/**
 * Control points lie outside the curve, but a few pixels of room do no harm and this cannot miss anything.
 */
QRectF boundsOf(const QVector<Shape> &shapes)
{
    QPainterPath all;
    for (const Shape &shape : shapes)
        all.addPath(toPainterPath(shape.path));
    return all.boundingRect();
}

/** Hundredths of a pixel are all that can be seen, and keep the file small. */
PathCommands rounded(PathCommands commands)
{
    for (PathCommand &command : commands) {
        for (QPointF &p : command.points)
            p = QPointF(std::round(p.x() * 100) / 100, std::round(p.y() * 100) / 100);
    }
    return commands;
}

QVector<QPointF> nodesOf(const PathCommands &commands)
{
    QVector<QPointF> nodes;
    for (const PathCommand &command : commands) {
        if (command.letter != 'Z')
            nodes << command.end();
    }
    return nodes;
}

/** Many nodes are drawn small, or they would hide the outline. */
double nodeRadius(int count)
{
    return count <= 100 ? 2 : count <= 500 ? 1.5 : 0.8;
}

void paint(QPainter &painter, const Shape &shape)
{
    if (shape.ink.fill.isValid()) {
        QPainterPath area = toPainterPath(closedContours(shape.path));
        area.setFillRule(Qt::OddEvenFill);
        painter.fillPath(area, shape.ink.fill);
    }
    if (shape.ink.stroke.isValid())
        painter.strokePath(toPainterPath(shape.path), QPen(shape.ink.stroke, shape.ink.width));
    if (!shape.ink.nodes)
        return;
    const QVector<QPointF> nodes = nodesOf(shape.path);
    const double radius = nodeRadius(nodes.size());
    painter.setPen(Qt::NoPen);
    painter.setBrush(shape.ink.stroke);
    for (const QPointF &node : nodes)
        painter.drawEllipse(node, radius, radius);
}

void writeColour(QXmlStreamWriter &xml, const QString &attribute, const QColor &colour)
{
    xml.writeAttribute(attribute, colour.isValid() ? colour.name() : QStringLiteral("none"));
    if (colour.isValid() && colour.alpha() < 255)
        xml.writeAttribute(attribute + QLatin1String("-opacity"), QString::number(colour.alphaF(), 'g', 3));
}

void writePath(QXmlStreamWriter &xml, const PathCommands &commands, const QColor &fill, const QColor &stroke,
               double width)
{
    if (commands.isEmpty())
        return;
    xml.writeEmptyElement(QStringLiteral("path"));
    xml.writeAttribute(QStringLiteral("d"), toText(rounded(commands)));
    xml.writeAttribute(QStringLiteral("fill-rule"), QStringLiteral("evenodd"));
    writeColour(xml, QStringLiteral("fill"), fill);
    writeColour(xml, QStringLiteral("stroke"), stroke);
    if (stroke.isValid())
        xml.writeAttribute(QStringLiteral("stroke-width"), QString::number(width));
}

void writeNodes(QXmlStreamWriter &xml, const Shape &shape)
{
    const QVector<QPointF> nodes = nodesOf(rounded(shape.path));
    for (const QPointF &node : nodes) {
        xml.writeEmptyElement(QStringLiteral("circle"));
        xml.writeAttribute(QStringLiteral("cx"), QString::number(node.x()));
        xml.writeAttribute(QStringLiteral("cy"), QString::number(node.y()));
        xml.writeAttribute(QStringLiteral("r"), QString::number(nodeRadius(nodes.size())));
        writeColour(xml, QStringLiteral("fill"), shape.ink.stroke);
    }
}

} // namespace

Ink Ink::operandA()
{
    return { QColor(70, 130, 220, 45), QColor(70, 130, 220, 150), 1, false };
}

Ink Ink::operandB()
{
    return { QColor(230, 120, 40, 45), QColor(230, 120, 40, 150), 1, false };
}

Ink Ink::result()
{
    return { QColor(60, 160, 90, 130), QColor(20, 80, 45), 1.5, true };
}

Ink Ink::otherResult()
{
    return { QColor(150, 90, 190, 150), QColor(80, 30, 110), 1.5, true };
}

Mapping Picture::add(const QVector<Shape> &shapes, const QRectF &cell)
{
    const QRectF box = boundsOf(shapes);
    // A single point or a straight line has a side of 0.
    const double across = cell.width() / std::max(box.width(), 1e-9);
    const double down = cell.height() / std::max(box.height(), 1e-9);
    const double scale = box.width() > 0 || box.height() > 0 ? std::min(across, down) : 1;
    const QPointF offset = cell.center() - box.center() * scale;
    for (const Shape &shape : shapes)
        m_shapes.append({ mapped(shape.path, scale, offset), shape.ink });
    return { scale, offset };
}

void Picture::caption(const QPointF &middle, const QString &text, double height)
{
    m_captions.append({ middle, text, height });
}

void Picture::rule(double y)
{
    const Ink thin{ QColor(), QColor(210, 210, 210), 1, false };
    m_shapes.append({ { { 'M', { QPointF(0, y) } }, { 'L', { QPointF(m_size.width(), y) } } }, thin });
}

QByteArray Picture::toPng() const
{
    QImage image(m_size.toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Shape &shape : m_shapes)
        paint(painter, shape);
    painter.setPen(Qt::black);
    for (const Caption &caption : m_captions) {
        QFont font{ QString::fromLatin1(fontFamily) };
        font.setPixelSize(static_cast<int>(caption.height));
        painter.setFont(font);
        const double width = painter.fontMetrics().horizontalAdvance(caption.text);
        painter.drawText(caption.middle - QPointF(width / 2, 0), caption.text);
    }
    painter.end();

    QByteArray data;
    QBuffer buffer(&data);
    if (!image.save(&buffer, "PNG"))
        throw ToolError{ QStringLiteral("cannot make a PNG picture") };
    return data;
}

QByteArray Picture::toSvg() const
{
    QByteArray data;
    QXmlStreamWriter xml(&data);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("svg"));
    xml.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
    xml.writeAttribute(QStringLiteral("width"), QString::number(m_size.width()));
    xml.writeAttribute(QStringLiteral("height"), QString::number(m_size.height()));
    for (const Shape &shape : m_shapes) {
        // Filled and stroked apart, as open contours take no fill.
        if (shape.ink.fill.isValid())
            writePath(xml, closedContours(shape.path), shape.ink.fill, QColor(), 0);
        if (shape.ink.stroke.isValid())
            writePath(xml, shape.path, QColor(), shape.ink.stroke, shape.ink.width);
        if (shape.ink.nodes)
            writeNodes(xml, shape);
    }
    for (const Caption &caption : m_captions) {
        xml.writeStartElement(QStringLiteral("text"));
        xml.writeAttribute(QStringLiteral("x"), QString::number(caption.middle.x()));
        xml.writeAttribute(QStringLiteral("y"), QString::number(caption.middle.y()));
        xml.writeAttribute(QStringLiteral("font-family"), QString::fromLatin1(fontFamily) + ", sans-serif");
        xml.writeAttribute(QStringLiteral("font-size"), QString::number(caption.height));
        xml.writeAttribute(QStringLiteral("text-anchor"), QStringLiteral("middle"));
        xml.writeCharacters(caption.text);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return data;
}

void Picture::save(const QString &file) const
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    if (suffix == QLatin1String("png"))
        writeFile(file, toPng());
    else if (suffix == QLatin1String("svg"))
        writeFile(file, toSvg());
    else
        throw ToolError{ QStringLiteral("cannot tell the kind of picture from %1 (.png, .svg)").arg(file) };
}

QSizeF pictureSize(const QVector<Shape> &shapes, QRectF &cell)
{
    const QRectF box = boundsOf(shapes);
    const double longer = std::max({ box.width(), box.height(), 1e-9 });
    const double inner = pictureSide - 2 * pictureMargin;
    // A flat drawing still gets a picture that can be looked at.
    const QSizeF size(std::max(inner * box.width() / longer, inner / 8),
                      std::max(inner * box.height() / longer, inner / 8));
    cell = QRectF(QPointF(pictureMargin, pictureMargin), size);
    return size + QSizeF(2 * pictureMargin, 2 * pictureMargin);
}

void savePicture(const QVector<Shape> &shapes, const QString &file)
{
    QRectF cell;
    Picture picture(pictureSize(shapes, cell));
    picture.add(shapes, cell);
    picture.save(file);
}

QVector<Shape> booleanShapes(const PathCommands &a, const PathCommands &b,
                             const QVector<PathCommands> &results)
{
    QVector<Shape> shapes{ { a, Ink::operandA() }, { b, Ink::operandB() } };
    for (int i = 0; i < results.size(); ++i)
        shapes.append({ results[i], i == 0 ? Ink::result() : Ink::otherResult() });
    return shapes;
}

QVector<Shape> effectShapes(const PathCommands &before, const PathCommands &after)
{
    return { { before, Ink::operandA() }, { after, Ink::result() } };
}
