#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <memory>

class XPath;

/** A pair of operands with its name and tags; the path data is text as the file has it. */
struct CorpusCase {
    QString id;
    QStringList tags;
    QString a;
    QString b;
};

/** Known areas of a case in square path units, operands filled by the even-odd rule. */
struct CorpusTruth {
    double areaA = 0;
    double areaB = 0;
    /** In the order of the table of operations: unite, intersect, subtract, exclude. */
    std::array<double, 4> results = {};
};

/** A case with its operands read; the engine leaves them untouched, so one pair serves every operation. */
struct CorpusOperands {
    std::unique_ptr<XPath> a;
    std::unique_ptr<XPath> b;
};

/** Cases of a file, one a line: id, tags, A, B with tabs between; may be packed by gzip. Throws ToolError. */
QVector<CorpusCase> readCorpus(const QString &file);
/** Areas by case: id, A, B, union, intersection, A minus B, exclusive or. Throws ToolError. */
QHash<QString, CorpusTruth> readTruth(const QString &file);
/** Throws ToolError that names the case when its path data is malformed. */
CorpusOperands readOperands(const CorpusCase &entry);
/** Area of the box around both operands. */
double jointBoxArea(const CorpusOperands &operands);
