#pragma once

#include "vxbooleanreport.h"
#include "vxoperation_p.h"

#include <QVector>

class XPath;
class vxPath;

namespace vx {

struct RunNotes;

/**
 * When an audit is made. Always is for tests: it shows that no call that skipped it would have been changed.
 */
enum class AuditMode { WhereDoubtful, Always };

/** The contours to go on with after an audit. */
struct AuditedContours {
    QVector<vxPath *> contours;
    /**
     * They are the result as they stand: to simplify what was compared, maybe again, could move its area.
     * Otherwise they are yet to be simplified.
     */
    bool isFinal;
};

/**
 * Holds the engine's contours, as traced and before any container turned them, against the arrangement of the
 * operands (null or empty ones count as empty), where that is needed. Those that it drops are released.
 */
AuditedContours audit(const QVector<const XPath *> &operands, Operation operation,
                      const QVector<vxPath *> &traced, const RunNotes &notes, AuditMode mode,
                      vxBooleanReport &report);

/**
 * Whether the cleaned copy of an operand fills what the original fills, in contours as simple as the
 * arrangement's. Costs an audit.
 */
bool confirmsCleaning(const XPath &original, const XPath &copy);

} // namespace vx
