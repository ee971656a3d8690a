#include "invocation.h"
#include "operation.h"
#include "picture.h"
#include "toolerror.h"

#include <pzgraphics/pzpath.h>
#include <pzgraphics/xpath.h>

#include <cstdio>

namespace {

ToolError noAnswer(const QString &command)
{
    return ToolError{ QStringLiteral(
                          "%1 has no answer here: an open first path can only be cut (intersect, subtract, "
                          "divide), and only by a closed one")
                          .arg(command) };
}

/** On standard error, so that the output stays path data. */
void printVerdict(const vxBooleanReport &report)
{
    std::fprintf(stderr, "verdict: %s\n", report.verdictName());
    if (report.verdict != vxBooleanReport::Doubtful)
        return;
    if (report.oddNodes > 0)
        std::fprintf(stderr, "pzpath: the result may be wrong: its outline does not close at %d places\n",
                     report.oddNodes);
    else if (report.limitHit)
        std::fprintf(stderr, "pzpath: the result may be wrong: a search for crossings was cut short\n");
    else
        std::fprintf(stderr, "pzpath: the result may be wrong: nothing could confirm it\n");
}

PathCommands throughEngine(const QString &name, const PathCommands &a, const PathCommands &b,
                           vxBooleanReport &report)
{
    const std::unique_ptr<XPath> result = compute(operationByName(name), *toXPath(a), *toXPath(b), report);
    if (!result)
        throw noAnswer(name);
    return commandsOf(*result);
}

PathCommands throughElements(const QString &name, const PathCommands &a, const PathCommands &b,
                             vxBooleanReport &report)
{
    PZPath path = toElements(a);
    PZPath other = toElements(b);
    if (name == QLatin1String("unite"))
        path.unite(other, report);
    else if (name == QLatin1String("intersect"))
        path.intersect(other, report);
    else if (name == QLatin1String("subtract"))
        path.subtract(other, report);
    else
        throw ToolError{ QStringLiteral("%1 is not offered on element paths").arg(name) };
    return commandsOf(path);
}

void runBoolean(const Invocation &in)
{
    const PathCommands a = in.path(0, "A");
    const PathCommands b = in.path(1, "B");
    vxBooleanReport report;
    const PathCommands result = in.has("elements") ? throughElements(in.command(), a, b, report)
                                                   : throughEngine(in.command(), a, b, report);
    printPaths(in, { result }, booleanShapes(a, b, { result }));
    printVerdict(report);
}

void runDivide(const Invocation &in)
{
    const PathCommands a = in.path(0, "A");
    const PathCommands b = in.path(1, "B");
    QVector<PathCommands> results;
    vxBooleanReport reports[2];
    results << throughEngine(QStringLiteral("subtract"), a, b, reports[0])
            << throughEngine(QStringLiteral("intersect"), a, b, reports[1]);
    printPaths(in, results, booleanShapes(a, b, results));
    for (const vxBooleanReport &report : reports)
        printVerdict(report);
}

} // namespace

QVector<Command> booleanCommands()
{
    const int options = Command::Output | Command::Elements;
    return {
        { "unite", "A B", "what lies in A or B", 2, 2, options, runBoolean },
        { "intersect", "A B", "what lies in both; of an open A the pieces inside B", 2, 2, options,
          runBoolean },
        { "subtract", "A B", "what lies in A but not in B; of an open A the pieces outside B", 2, 2, options,
          runBoolean },
        { "exclude", "A B", "what lies in one of them only", 2, 2, options, runBoolean },
        { "divide", "A B", "two lines: A without B, then what lies in both", 2, 2, Command::Output,
          runDivide },
    };
}
