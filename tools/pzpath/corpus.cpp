#include "corpus.h"

#include "pathdata.h"
#include "textfile.h"
#include "toolerror.h"

#include <pzgraphics/xpath.h>

#include <algorithm>

namespace {

/** The non-empty lines of a file cut at tabs; every line has the given number of fields. */
QVector<QStringList> readTable(const QString &file, int fields)
{
    QVector<QStringList> rows;
    const QList<QByteArray> lines = readTextFile(file).split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        QString line = QString::fromUtf8(lines[i]);
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.isEmpty())
            continue;
        rows << line.split(QLatin1Char('\t'));
        if (rows.last().size() != fields)
            throw ToolError{ QStringLiteral("%1:%2: %3 fields instead of %4")
                                 .arg(file)
                                 .arg(i + 1)
                                 .arg(rows.last().size())
                                 .arg(fields) };
    }
    return rows;
}

double areaField(const QString &file, const QStringList &row, int field)
{
    bool ok = false;
    const double value = row[field].toDouble(&ok);
    if (!ok)
        throw ToolError{ QStringLiteral("%1: %2: not a number: '%3'").arg(file, row[0], row[field]) };
    return value;
}

std::unique_ptr<XPath> readOperand(const CorpusCase &entry, const QString &data, const char *name)
{
    try {
        return toXPath(parsePathData(data));
    } catch (const ToolError &error) {
        throw ToolError{ QStringLiteral("%1: path %2: %3").arg(entry.id, QLatin1String(name), error.text) };
    }
}

} // namespace

QVector<CorpusCase> readCorpus(const QString &file)
{
    QVector<CorpusCase> cases;
    for (const QStringList &row : readTable(file, 4))
        cases.append({ row[0], row[1].split(QLatin1Char(','), Qt::SkipEmptyParts), row[2], row[3] });
    if (cases.isEmpty())
        throw ToolError{ QStringLiteral("%1: no cases").arg(file) };
    return cases;
}

QHash<QString, CorpusTruth> readTruth(const QString &file)
{
    QHash<QString, CorpusTruth> truth;
    for (const QStringList &row : readTable(file, 7)) {
        CorpusTruth entry;
        entry.areaA = areaField(file, row, 1);
        entry.areaB = areaField(file, row, 2);
        for (int i = 0; i < 4; ++i)
            entry.results[i] = areaField(file, row, 3 + i);
        truth.insert(row[0], entry);
    }
    return truth;
}

CorpusOperands readOperands(const CorpusCase &entry)
{
    return { readOperand(entry, entry.a, "A"), readOperand(entry, entry.b, "B") };
}

double jointBoxArea(const CorpusOperands &operands)
{
    const vxRect a = operands.a->getBounds(vxBoundOpt::geometric(), vxStyle());
    const vxRect b = operands.b->getBounds(vxBoundOpt::geometric(), vxStyle());
    return (std::max(a.right(), b.right()) - std::min(a.x, b.x)) *
           (std::max(a.bottom(), b.bottom()) - std::min(a.y, b.y));
}
