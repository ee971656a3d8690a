#pragma once

#include "versus_run.h"

#include <pzgraphics/xpath.h>

#include <QPainterPath>

/** One case as each side takes it. Standing operands: reading and converting is not part of any time. */
struct VersusOperands {
    explicit VersusOperands(const CorpusCase &entry);

    CorpusOperands ours;
    QPainterPath a, b;
};

/** Runs one operation of one side and keeps the result until the next run. */
class VersusRunner
{
public:
    /** fresh: see VersusOptions. */
    VersusRunner(const VersusOperands &operands, Side side, int operation, bool fresh = false);
    ~VersusRunner();

    /** The operation alone, in microseconds. */
    double run();
    /** Area of the last result; NaN for none. */
    double area() const;

private:
    const VersusOperands &m_operands;
    const Side m_side;
    const int m_operation;
    const bool m_fresh;
    /** Copies of the operands for one run; null where they stand. */
    std::unique_ptr<XPath> m_a, m_b;
    std::unique_ptr<XPath> m_path;
    QPainterPath m_painterPath;
};
