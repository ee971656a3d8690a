#pragma once

#include "corpus.h"
#include "operation.h"

#include <QHash>
#include <QString>
#include <QVector>

#include <array>

/** The two that are compared. */
enum Side { Ours, Painter };
inline constexpr std::array<Side, 2> sides = { Ours, Painter };

/** How one side did on one operation of one case. */
struct SideResult {
    enum Status {
        Answered,
        NoAnswer, ///< null, or a coordinate that is not finite
        OverLimit,
        Crashed,
        Skipped, ///< a smaller size of the same series was over the limit already
        NotRun   ///< the other side, which comes first, did not come to its end
    };
    double medianUs = 0;
    double area = 0;
    Status status = Answered;
};

/** A case with its place in the tables: the file's name is its family. */
struct VersusCase {
    CorpusCase entry;
    QString family;
    bool hasTruth = false;
    CorpusTruth truth;

    /** Number behind a tag such as "n:" or "x:", 0 without one. */
    int tagNumber(const QString &prefix) const;
    /**
     * Off the known area by more than a thousandth of the larger operand, or no answer; false where nothing
     * is known.
     */
    bool isWrong(int operation, const SideResult &result) const;
};

struct VersusResult {
    const VersusCase *entry;
    int operation; ///< position in the table of operations
    std::array<SideResult, 2> sides;
};

struct VersusOptions {
    int reps = 7;   ///< runs of each side, in turn and spread over the whole; fewer where they take long
    int limit = 20; ///< whole seconds for one run of one side
    /** A side that was over the limit is not run on later cases of its series. For series by growing size. */
    bool skipLarger = false;
    /** New copies of our operands for every run, so that nothing that they keep from the last one serves. */
    bool fresh = false;
};

/**
 * The cases of all files in the order given, with known areas where a truth file names them. The family is
 * the file's name, "scale-ring" for "scale-ring-300.tsv". Throws ToolError.
 */
QVector<VersusCase> readCases(const QStringList &files, const QStringList &truthFiles);

/** Every operation on every case by both sides, in a process of its own. Throws ToolError. */
QVector<VersusResult> runVersus(const QVector<VersusCase> &cases, const VersusOptions &options);

/**
 * Kilobytes that one operation needed at its peak beyond the operands; 0 where a side did not come to its
 * end.
 */
struct PeakMemory {
    const VersusCase *entry;
    int operation;
    std::array<qint64, 2> peakKb;
};
QVector<PeakMemory> measureMemory(const QVector<VersusCase> &cases, int limit);
