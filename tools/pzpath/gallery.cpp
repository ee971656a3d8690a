#include "corpus.h"
#include "invocation.h"
#include "operation.h"
#include "picture.h"
#include "toolerror.h"

#include <pzgraphics/pzpath.h>
#include <pzgraphics/vxcurvelocation.h>
#include <pzgraphics/xpath.h>

#include <functional>

// Every operation and effect on one sheet: a row of booleans for the first case of each file, then the
// effects, two cells each.

namespace {

constexpr int columns = 6;
constexpr int effectRows = 5;
constexpr double cellSide = 190;
constexpr double cellMargin = 12;
constexpr double captionHeight = 15;
constexpr double rowHeight = cellSide + captionHeight + 2 * cellMargin;
constexpr double columnWidth = cellSide + 2 * cellMargin;

struct Subject {
    PathCommands a;
    PathCommands b;
};

/** One effect: how its subject is made from the operands of a row, and what it does. */
struct Effect {
    QString caption;
    int row;
    std::function<PathCommands(const Subject &)> before;
    std::function<PathCommands(const PathCommands &)> after;
    bool marksStart = false;
};

QRectF cell(int column, int row)
{
    return QRectF(column * columnWidth + cellMargin, row * rowHeight + cellMargin, cellSide, cellSide);
}

void captionUnder(Picture &picture, const QRectF &area, const QString &text)
{
    picture.caption(QPointF(area.center().x(), area.bottom() + cellMargin / 2 + captionHeight), text,
                    captionHeight);
}

PathCommands booleanOf(const Subject &subject, const Operation &operation)
{
    const std::unique_ptr<XPath> result = compute(operation, *toXPath(subject.a), *toXPath(subject.b));
    return result ? commandsOf(*result) : PathCommands();
}

void addCell(Picture &picture, int column, int row, const QVector<Shape> &shapes, const QString &caption)
{
    picture.add(shapes, cell(column, row));
    captionUnder(picture, cell(column, row), caption);
}

void addBooleans(Picture &picture, int row, const Subject &subject)
{
    addCell(picture, 0, row, booleanShapes(subject.a, subject.b, {}), QStringLiteral("A and B"));
    QVector<PathCommands> parts;
    int column = 1;
    for (const Operation &operation : operations) {
        const PathCommands result = booleanOf(subject, operation);
        addCell(picture, column++, row, booleanShapes(subject.a, subject.b, { result }),
                QString::fromLatin1(operation.name));
        if (column == 3 || column == 4)
            parts.prepend(result);
    }
    addCell(picture, column, row, booleanShapes(subject.a, subject.b, parts), QStringLiteral("divide"));
}

PathCommands wholeA(const Subject &subject)
{
    return subject.a;
}

/** The first contour without its closing line. */
PathCommands openedA(const Subject &subject)
{
    int end = 1;
    while (end < subject.a.size() && subject.a[end].letter != 'M' && subject.a[end].letter != 'Z')
        ++end;
    return subject.a.mid(0, end);
}

std::function<PathCommands(const PathCommands &)> onElements(const std::function<void(PZPath &)> &effect)
{
    return [effect](const PathCommands &before) {
        PZPath path = toElements(before);
        effect(path);
        return commandsOf(path);
    };
}

PathCommands flattened(const PathCommands &before)
{
    const std::unique_ptr<XPath> path = toXPathAsDrawn(before);
    path->flatten(25);
    return commandsOf(*path);
}

Shape mark(const QPointF &at, double size)
{
    PZPath disc;
    disc.ellipse(QRectF(at - QPointF(size, size) / 2, QSizeF(size, size)));
    Ink ink = Ink::otherResult();
    ink.nodes = false;
    return { commandsOf(disc), ink };
}

/** The size of a mark that can be seen on a drawing of these shapes. */
double markSize(const PathCommands &commands)
{
    const QRectF box = toPainterPath(commands).boundingRect();
    return qMax(box.width(), box.height()) / 20;
}

QVector<Effect> effects()
{
    const auto smooth = [](int type) { return onElements([type](PZPath &path) { path.smooth(type); }); };
    const QRectF box(0, 0, 1000, 700);
    const auto boxOutline = [box](const Subject &) {
        PZPath path;
        path.addRect(box);
        return commandsOf(path);
    };
    const auto drawn = [](const std::function<void(PZPath &)> &draw) {
        return [draw](const PathCommands &) {
            PZPath path;
            draw(path);
            return commandsOf(path);
        };
    };
    return {
        { "flatten 25", 1, wholeA, flattened },
        { "smooth 1", 2, wholeA, smooth(1) },
        { "smooth 2", 2, wholeA, smooth(2) },
        { "smooth 3", 2, wholeA, smooth(3) },
        { "smooth 4", 2, wholeA, smooth(4) },
        { "round 50", 2, wholeA, onElements([](PZPath &path) { path.setCornerRound(50); }) },
        { "round2 50", 2, wholeA, onElements([](PZPath &path) { path.setCornerRound2(50); }) },
        { "manual 25 12", 0, wholeA, onElements([](PZPath &path) { path.manualPath(path, 25, 12); }) },
        { "heads 200 400", 2, openedA, onElements([](PZPath &path) { path.setLineHead(200, 400); }) },
        { "trim 900 600", 2, openedA, onElements([](PZPath &path) { path.splitAt(900, 600); }) },
        { "reverse", 2, openedA, onElements([](PZPath &path) { path.reverse(); }), true },
        { "arc 30 250", 0, boxOutline, drawn([box](PZPath &path) { path.arcTo(box, 30, 250); }) },
        { "ellipse", 0, boxOutline, drawn([box](PZPath &path) { path.ellipse(box); }) },
    };
}

void addEffect(Picture &picture, int column, int row, const Effect &effect, const Subject &subject)
{
    const PathCommands before = effect.before(subject);
    const PathCommands after = effect.after(before);
    // Both go into both cells, one of them unseen, so that they are drawn to one scale.
    QVector<Shape> left{ { before, Ink::operandA() }, { after, Ink() } };
    QVector<Shape> right{ { before, Ink() }, { after, Ink::result() } };
    if (effect.marksStart) {
        // A path begins at the mark; without it a reversed one looks like the other.
        left += mark(before.value(0).end(), markSize(before));
        right += mark(after.value(0).end(), markSize(before));
    }
    picture.add(left, cell(column, row));
    picture.add(right, cell(column + 1, row));
    captionUnder(picture, cell(column, row).united(cell(column + 1, row)), effect.caption);
}

/** A line across the shape, cut at its outline: the pieces inside and the pieces outside. */
void addOpenCut(Picture &picture, int column, int row, const Subject &subject)
{
    const QRectF box = toPainterPath(subject.a).boundingRect();
    const QPointF reach(box.width() * 0.15, box.height() * 0.3);
    const PathCommands line{
        { 'M', { box.topLeft() - reach } },
        { 'C', { box.topRight() + reach, box.bottomLeft() - reach, box.bottomRight() + reach } }
    };
    int offset = 0;
    for (const char *name : { "intersect", "subtract" }) {
        const PathCommands pieces =
            booleanOf({ line, subject.a }, operationByName(QString::fromLatin1(name)));
        Ink bold = Ink::result();
        bold.width = 3;
        addCell(picture, column + offset++, row,
                { { subject.a, Ink::operandB() }, { line, Ink::operandA() }, { pieces, bold } },
                QStringLiteral("open path, %1").arg(QLatin1String(name)));
    }
}

void addCrossings(Picture &picture, int column, int row, const Subject &subject)
{
    QVector<Shape> shapes = booleanShapes(subject.a, subject.b, {});
    addCell(picture, column, row, shapes, QStringLiteral("A and B"));
    const std::unique_ptr<XPath> a = toXPath(subject.a);
    const std::unique_ptr<XPath> b = toXPath(subject.b);
    const QList<vxCurveLocation *> crossings = a->getCrossings(b.get());
    for (const vxCurveLocation *crossing : crossings)
        shapes << mark(QPointF(crossing->getPoint().x, crossing->getPoint().y), markSize(subject.a));
    vxCurveLocation::releaseAll(crossings);
    addCell(picture, column + 1, row, shapes, QStringLiteral("crossings"));
}

void addEffects(Picture &picture, int firstRow, const QVector<Subject> &subjects)
{
    constexpr int pairs = columns / 2;
    int place = firstRow * pairs;
    const auto row = [&] { return place / pairs; };
    const auto column = [&] { return place % pairs * 2; };
    for (const Effect &effect : effects()) {
        addEffect(picture, column(), row(), effect, subjects[effect.row % subjects.size()]);
        ++place;
    }
    addOpenCut(picture, column(), row(), subjects[0]);
    ++place;
    addCrossings(picture, column(), row(), subjects.last());
}

void runGallery(const Invocation &in)
{
    if (!in.has("output"))
        throw ToolError{ QStringLiteral("gallery needs -o FILE.png or -o FILE.svg") };
    QVector<Subject> subjects;
    for (const QString &file : in.arguments()) {
        const CorpusCase first = readCorpus(file).first();
        subjects.append({ parsePathData(first.a), parsePathData(first.b) });
    }
    const int rows = subjects.size() + effectRows;
    Picture picture(QSizeF(columns * columnWidth, rows * rowHeight));
    for (int row = 0; row < subjects.size(); ++row)
        addBooleans(picture, row, subjects[row]);
    picture.rule(subjects.size() * rowHeight);
    addEffects(picture, subjects.size(), subjects);
    picture.save(in.value("output"));
}

} // namespace

QVector<Command> galleryCommands()
{
    return {
        { "gallery", "FILE...", "a sheet of every operation and effect, on the first case of each file", 1,
          Command::anyNumber, Command::Output | Command::WritesText, runGallery },
    };
}
