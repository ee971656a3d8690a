#include "versus_sides.h"

#include "evenoddarea.h"
#include "pathdata.h"

#include <chrono>
#include <limits>

namespace {

/** The operation in the order of the table: unite, intersect, subtract, exclude. */
QPainterPath painterBoolean(int operation, const QPainterPath &a, const QPainterPath &b)
{
    switch (operation) {
    case 0:
        return a.united(b);
    case 1:
        return a.intersected(b);
    case 2:
        return a.subtracted(b);
    default:
        // QPainterPath has no exclusive or; this is how its users write one.
        return a.subtracted(b).united(b.subtracted(a));
    }
}

QPainterPath painterOperand(const QString &data)
{
    QPainterPath path = toPainterPath(parsePathData(data));
    path.setFillRule(Qt::OddEvenFill);
    return path;
}

} // namespace

VersusOperands::VersusOperands(const CorpusCase &entry)
    : ours(readOperands(entry)), a(painterOperand(entry.a)), b(painterOperand(entry.b))
{
}

VersusRunner::VersusRunner(const VersusOperands &operands, Side side, int operation, bool fresh)
    : m_operands(operands), m_side(side), m_operation(operation), m_fresh(fresh)
{
}

VersusRunner::~VersusRunner() = default;

double VersusRunner::run()
{
    using Clock = std::chrono::steady_clock;
    // The last result dies outside the time.
    m_path.reset();
    m_painterPath = QPainterPath();
    if (m_fresh && m_side == Ours) {
        m_a.reset(m_operands.ours.a->clone());
        m_b.reset(m_operands.ours.b->clone());
    }
    XPath &a = m_a ? *m_a : *m_operands.ours.a;
    XPath &b = m_b ? *m_b : *m_operands.ours.b;
    const auto start = Clock::now();
    if (m_side == Ours)
        m_path = compute(operations[size_t(m_operation)], a, b);
    else
        m_painterPath = painterBoolean(m_operation, m_operands.a, m_operands.b);
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double VersusRunner::area() const
{
    if (m_side == Painter)
        return evenOddArea(m_painterPath);
    return m_path ? evenOddArea(toPainterPath(commandsOf(*m_path)))
                  : std::numeric_limits<double>::quiet_NaN();
}
