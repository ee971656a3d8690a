#pragma once

#include "corpus.h"
#include "operation.h"

#include <QVector>

#include <functional>

/** Outcome of one operation on one case; plain data, so that it can cross a process boundary. */
struct RunResult {
    enum Status {
        Ok,
        Empty,      ///< a result without contours
        None,       ///< the engine has no answer for these operands
        NotANumber, ///< the result holds a coordinate or an area that is not a number
        Timeout,
        Crash
    };

    qint64 medianNs = 0; ///< of the boolean alone
    int contours = 0;
    int segments = 0;
    double area = 0;
    Status status = Ok;
    /** vxBooleanReport::Verdict; -1 where the operation did not end. */
    int verdict = -1;
};

const char *statusName(RunResult::Status status);
/** "-" for -1. */
const char *verdictName(int verdict);

/** Runs the operation reps times (at least once) and measures the last result. */
RunResult runOperation(const Operation &operation, const CorpusOperands &operands, int reps);

struct RunOptions {
    QVector<const Operation *> operations;
    int reps = 1;
    int timeout = 60; ///< whole seconds for all repetitions of one operation, 0 for none; isolated runs only
    bool isolated = true; ///< in a process of its own, so that a hang or crash is a result like another
};

/**
 * Runs every operation on every case, cases first; finished is told each result as it comes. Throws
 * ToolError.
 */
void runCorpus(const QVector<CorpusCase> &cases, const RunOptions &options,
               const std::function<void(const CorpusCase &, const Operation &, const RunResult &)> &finished);
