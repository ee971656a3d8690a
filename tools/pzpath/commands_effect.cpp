#include "invocation.h"
#include "picture.h"
#include "toolerror.h"

#include <pzgraphics/pzpath.h>
#include <pzgraphics/xpath.h>

#include <cstdio>

namespace {

/** Runs an effect on the element path given as the last argument. */
template <typename Effect>
void runEffect(const Invocation &in, Effect effect)
{
    const PathCommands before = in.path(in.arguments().size() - 1, "A");
    PZPath path = toElements(before);
    effect(path);
    const PathCommands after = commandsOf(path);
    printPaths(in, { after }, effectShapes(before, after));
}

void runFlatten(const Invocation &in)
{
    const PathCommands before = in.path(1, "A");
    const std::unique_ptr<XPath> path = toXPathAsDrawn(before);
    path->flatten(in.number(0, "FLATNESS"));
    const PathCommands after = commandsOf(*path);
    printPaths(in, { after }, effectShapes(before, after));
}

void runSmooth(const Invocation &in)
{
    const double type = in.number(0, "TYPE");
    if (type != 1 && type != 2 && type != 3 && type != 4)
        throw ToolError{ QStringLiteral("TYPE is 1, 2, 3 or 4, not %1").arg(in.arguments()[0]) };
    runEffect(in, [&](PZPath &path) { path.smooth(static_cast<int>(type)); });
}

void runRound(const Invocation &in)
{
    const double distance = in.number(0, "DISTANCE");
    runEffect(in, [&](PZPath &path) { path.setCornerRound(distance); });
}

void runRound2(const Invocation &in)
{
    const double distance = in.number(0, "DISTANCE");
    runEffect(in, [&](PZPath &path) { path.setCornerRound2(distance); });
}

/** Not an error, but silence would leave the user wondering why nothing moved. */
void note(const char *text)
{
    std::fprintf(stderr, "pzpath: %s\n", text);
}

void runHeads(const Invocation &in)
{
    const double start = in.number(0, "START");
    const double end = in.number(1, "END");
    runEffect(in, [&](PZPath &path) {
        if (!path.setLineHead(start, end))
            note("no open end was trimmed");
    });
}

void runTrim(const Invocation &in)
{
    const double start = in.number(0, "START");
    const double end = in.number(1, "END");
    runEffect(in, [&](PZPath &path) {
        if (!path.splitAt(start, end))
            note("nothing was trimmed: START has to be a whole unit at least and shorter than the path");
    });
}

void runManual(const Invocation &in)
{
    const double amplitude = in.number(0, "AMPLITUDE");
    const double step = in.number(1, "STEP");
    runEffect(in, [&](PZPath &path) { path.manualPath(path, amplitude, step); });
}

void runReverse(const Invocation &in)
{
    runEffect(in, [](PZPath &path) { path.reverse(); });
}

QRectF rectArgument(const Invocation &in)
{
    return QRectF(in.number(0, "X"), in.number(1, "Y"), in.number(2, "W"), in.number(3, "H"));
}

void printShape(const Invocation &in, const PZPath &path)
{
    const PathCommands result = commandsOf(path);
    printPaths(in, { result }, { { result, Ink::result() } });
}

void runArc(const Invocation &in)
{
    PZPath path;
    path.arcTo(rectArgument(in), in.number(4, "START"), in.number(5, "SWEEP"));
    printShape(in, path);
}

void runEllipse(const Invocation &in)
{
    PZPath path;
    path.ellipse(rectArgument(in));
    printShape(in, path);
}

} // namespace

QVector<Command> effectCommands()
{
    const int drawn = Command::Output;
    return {
        { "flatten", "FLATNESS A", "straight segments within FLATNESS", 2, 2, drawn, runFlatten },
        { "smooth", "TYPE A", "1 Catmull-Rom, 2 geometric, 3 asymmetric, 4 symmetric", 2, 2, drawn,
          runSmooth },
        { "round", "DISTANCE A", "corners rounded by a distance along the path", 2, 2, drawn, runRound },
        { "round2", "DISTANCE A", "corners rounded by at most half of each edge", 2, 2, drawn, runRound2 },
        { "heads", "START END A", "open ends cut back to make room for arrow heads", 3, 3, drawn, runHeads },
        { "manual", "AMPLITUDE STEP A", "a hand-drawn line along the path", 3, 3, drawn, runManual },
        { "trim", "START END A", "lengths cut off at the start and at the end", 3, 3, drawn, runTrim },
        { "reverse", "A", "every contour drawn the other way", 1, 1, drawn, runReverse },
        { "arc", "X Y W H START SWEEP", "arc of the ellipse in a box, in degrees", 6, 6, drawn, runArc },
        { "ellipse", "X Y W H", "the ellipse in a box", 4, 4, drawn, runEllipse },
    };
}
