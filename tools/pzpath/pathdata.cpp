#include "pathdata.h"

#include "toolerror.h"

#include <pzgraphics/pzpath.h>
#include <pzgraphics/vxpath.h>
#include <pzgraphics/vxsegment.h>
#include <pzgraphics/xpath.h>

#include <QLocale>
#include <QStringList>

#include <cmath>

namespace {

/** Walks over the text once; positions in messages count from 1. */
class Reader
{
public:
    explicit Reader(const QString &text) : m_text(text) {}

    PathCommands read()
    {
        while (skipSeparators()) {
            if (atLetter())
                takeLetter();
            else if (m_letter == 0 || m_letter == 'Z')
                fail(QStringLiteral("number without a command"), m_pos);
            if (m_letter == 'Z')
                append({ 'Z', {} });
            else
                append(takePoints());
        }
        return m_commands;
    }

private:
    [[noreturn]] static void fail(const QString &what, int position)
    {
        throw ToolError{ QStringLiteral("%1 at character %2").arg(what).arg(position + 1) };
    }

    bool atEnd() const { return m_pos >= m_text.size(); }
    bool at(const char *set) const
    {
        return !atEnd() && m_text[m_pos] != QChar(0) && QLatin1String(set).contains(m_text[m_pos]);
    }
    bool atLetter() const { return m_text[m_pos].isLetter(); }

    /** False at the end of the text. */
    bool skipSeparators()
    {
        while (!atEnd() && (m_text[m_pos].isSpace() || m_text[m_pos] == ','))
            ++m_pos;
        return !atEnd();
    }

    void takeLetter()
    {
        if (!at("MLCZ"))
            fail(QStringLiteral("unknown command '%1' (absolute M, L, C and Z are read)").arg(m_text[m_pos]),
                 m_pos);
        m_letter = m_text[m_pos].toLatin1();
        m_letterPos = m_pos++;
    }

    PathCommand takePoints()
    {
        PathCommand command{ m_letter, {} };
        const int wanted = 2 * command.pointCount();
        for (int i = 0; i < wanted; ++i) {
            if (!skipSeparators() || atLetter())
                fail(QStringLiteral("%1 with %2 of %3 numbers").arg(QChar(m_letter)).arg(i).arg(wanted),
                     m_letterPos);
            const double value = takeNumber();
            (i % 2 ? command.points[i / 2].ry() : command.points[i / 2].rx()) = value;
        }
        return command;
    }

    /** A number ends where it can grow no further, so "1-2" and "1.5.5" are two numbers each. */
    double takeNumber()
    {
        const int start = m_pos;
        if (at("+-"))
            ++m_pos;
        takeDigits();
        if (at(".")) {
            ++m_pos;
            takeDigits();
        }
        takeExponent();
        bool ok = false;
        const double value = m_text.midRef(start, m_pos - start).toDouble(&ok);
        if (!ok || !std::isfinite(value))
            fail(QStringLiteral("not a finite number: '%1'").arg(m_text.mid(start, qMax(1, m_pos - start))),
                 start);
        return value;
    }

    void takeDigits()
    {
        while (at("0123456789"))
            ++m_pos;
    }

    void takeExponent()
    {
        if (!at("eE"))
            return;
        ++m_pos;
        if (at("+-"))
            ++m_pos;
        takeDigits();
    }

    void append(const PathCommand &command)
    {
        if (m_commands.isEmpty() && command.letter != 'M')
            fail(QStringLiteral("path data must begin with M, not %1").arg(QChar(m_letter)), m_letterPos);
        const bool restart =
            command.letter != 'M' && !m_commands.isEmpty() && m_commands.last().letter == 'Z';
        if (restart && command.letter == 'Z')
            return;
        if (restart)
            m_commands.append({ 'M', { m_start } });
        m_commands.append(command);
        if (command.letter == 'M') {
            m_start = command.end();
            m_letter = 'L';
        }
    }

    const QString m_text;
    int m_pos = 0;
    char m_letter = 0;
    int m_letterPos = 0;
    QPointF m_start;
    PathCommands m_commands;
};

vxPoint toVx(const QPointF &p)
{
    return vxPoint(p.x(), p.y());
}

void closeContour(vxPath *contour)
{
    vxSegment *first = contour->getFirstSegment();
    vxSegment *last = contour->getLastSegment();
    if (first != last && first->getPoint() == last->getPoint()) {
        first->setHandleIn(last->getHandleIn());
        contour->removeSegment(last->index);
    }
    contour->setClosed(true);
}

void draw(vxPath *contour, const PathCommand &command)
{
    switch (command.letter) {
    case 'M':
        contour->moveToPt(toVx(command.points[0]));
        break;
    case 'L':
        contour->lineToPt(toVx(command.points[0]));
        break;
    case 'C':
        contour->cubicCurveTo(toVx(command.points[0]), toVx(command.points[1]), toVx(command.points[2]));
        break;
    default:
        closeContour(contour);
    }
}

/** New contours (count 0) that belong to parent once it takes them. */
QVector<vxPath *> toContours(const PathCommands &commands, XPath *parent)
{
    QVector<vxPath *> contours;
    char previous = 0;
    for (const PathCommand &command : commands) {
        // A run of moves is its last one: moveTo replaces a lone segment.
        if (command.letter == 'M' && previous != 'M')
            contours << new vxPath(parent);
        draw(contours.last(), command);
        previous = command.letter;
    }
    return contours;
}

PathCommand curveBetween(const vxSegment *from, const vxSegment *to)
{
    if (from->getHandleOut() == vxPoint() && to->getHandleIn() == vxPoint())
        return { 'L', { to->getPoint().toPt() } };
    return { 'C',
             { from->getPoint().add(from->getHandleOut()).toPt(),
               to->getPoint().add(to->getHandleIn()).toPt(), to->getPoint().toPt() } };
}

} // namespace

PathCommands parsePathData(const QString &text)
{
    return Reader(text).read();
}

QString toText(double value)
{
    // The sign of a zero says nothing to a reader.
    return QString::number(value == 0 ? 0.0 : value, 'g', QLocale::FloatingPointShortest);
}

QString toText(const PathCommands &commands)
{
    QStringList tokens;
    for (const PathCommand &command : commands) {
        tokens << QString(QLatin1Char(command.letter));
        for (int i = 0; i < command.pointCount(); ++i) {
            tokens << toText(command.points[i].x()) << toText(command.points[i].y());
        }
    }
    return tokens.join(QLatin1Char(' '));
}

std::unique_ptr<XPath> toXPath(const PathCommands &commands)
{
    auto path = std::make_unique<XPath>();
    path->addChildren(toContours(commands, path.get()));
    return path;
}

std::unique_ptr<XPath> toXPathAsDrawn(const PathCommands &commands)
{
    auto path = std::make_unique<XPath>();
    const QVector<vxPath *> contours = toContours(commands, path.get());
    // A contour that carries an orientation flag is not turned when it is added.
    for (vxPath *contour : contours)
        contour->addFlags(contour->isClockwise() ? vxPath::madeClockwise : vxPath::madeCounterClockwise);
    path->addChildren(contours);
    return path;
}

PZPath toElements(const PathCommands &commands)
{
    PZPath path;
    path.pzpathFromSvgPath2(toText(commands));
    return path;
}

QPainterPath toPainterPath(const PathCommands &commands)
{
    QPainterPath path;
    for (const PathCommand &command : commands) {
        const auto &p = command.points;
        switch (command.letter) {
        case 'M':
            path.moveTo(p[0]);
            break;
        case 'L':
            path.lineTo(p[0]);
            break;
        case 'C':
            path.cubicTo(p[0], p[1], p[2]);
            break;
        default:
            path.closeSubpath();
        }
    }
    return path;
}

PathCommands commandsOf(const vxPath &contour)
{
    const QList<vxSegment *> segments = contour.getSegments();
    if (segments.isEmpty())
        return {};
    PathCommands commands{ { 'M', { segments.first()->getPoint().toPt() } } };
    for (int i = 1; i < segments.size(); ++i)
        commands << curveBetween(segments[i - 1], segments[i]);
    if (contour.isClosed()) {
        const PathCommand closing = curveBetween(segments.last(), segments.first());
        if (closing.letter == 'C')
            commands << closing;
        commands << PathCommand{ 'Z', {} };
    }
    return commands;
}

PathCommands commandsOf(const XPath &path)
{
    PathCommands commands;
    for (const vxPath *contour : path.children)
        commands += commandsOf(*contour);
    return commands;
}

PathCommands commandsOf(const PZPath &path)
{
    PathCommands commands;
    for (int i = 0; i < path.count(); ++i) {
        const QPointF point = path[i].toPoint();
        switch (path[i].type) {
        case PZPath::MoveToElement:
            commands.append({ 'M', { point } });
            break;
        case PZPath::LineToElement:
            commands.append({ 'L', { point } });
            break;
        case PZPath::CurveToElement:
            if (i + 2 < path.count())
                commands.append({ 'C', { point, path[i + 1].toPoint(), path[i + 2].toPoint() } });
            i += 2;
            break;
        case PZPath::CloseElement:
            commands.append(PathCommand{ 'Z', {} });
            break;
        }
    }
    return commands;
}

PathCommands mapped(PathCommands commands, double scale, const QPointF &offset)
{
    for (PathCommand &command : commands) {
        for (QPointF &point : command.points)
            point = point * scale + offset;
    }
    return commands;
}

PathCommands closedContours(const PathCommands &commands)
{
    PathCommands closed;
    int start = 0;
    for (int i = 0; i < commands.size(); ++i) {
        if (commands[i].letter == 'M')
            start = i;
        if (commands[i].letter == 'Z')
            closed += commands.mid(start, i - start + 1);
    }
    return closed;
}
