#pragma once

#include "corpus.h"
#include "runner.h"

#include <QHash>
#include <QMap>
#include <QPair>

/** Holds results against known areas: wrong ones and median times by tag and operation. */
class Report
{
public:
    /**
     * A result is wrong when its area is off by more than a thousandth of the larger operand's area, or, with
     * a boxTolerance above 0, by more than that fraction of the box around both operands; or when there is no
     * result.
     */
    Report(QHash<QString, CorpusTruth> truth, double boxTolerance)
        : m_truth(std::move(truth)), m_boxTolerance(boxTolerance)
    {
    }

    /** Cases without a known area are left out. */
    void add(const CorpusCase &entry, const Operation &operation, const RunResult &result);
    /** The table, then a line for each wrong case. */
    void print() const;

private:
    struct Group {
        int cases = 0;
        int wrong = 0;
        QVector<qint64> times;
    };

    double reference(const CorpusCase &entry, const CorpusTruth &truth) const;

    QHash<QString, CorpusTruth> m_truth;
    double m_boxTolerance;
    /** By tag (empty for all cases, so that it comes first) and position in the table of operations. */
    QMap<QPair<QString, int>, Group> m_groups;
    QStringList m_wrong;
};
