#pragma once

#include "versus_run.h"

/** Markdown tables on standard output. */

/**
 * Families (every tag instead, when asked) and operations: times of both sides, their ratio, wrong results.
 */
void printComparison(const QVector<VersusResult> &results, bool byTag);
/** Series by size: how time grows from one size to the next. Cases of a size count by their median. */
void printGrowth(const QVector<VersusResult> &results);
void printMemory(const QVector<PeakMemory> &peaks);
/** Wrong, late and crashed ones, a line each, as comments below a table are: "- case operation: ...". */
void printFaults(const QVector<VersusResult> &results);
