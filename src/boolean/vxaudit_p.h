#pragma once

#include "vxbooleanreport.h"
#include "vxoperation_p.h"
#include "vxrunnotes_p.h"

#include <QVector>

namespace vx {

/**
 * When an audit is made. Always is for tests: it shows that no call that skipped it would have been changed.
 */
enum class AuditMode { WhereDoubtful, Always, Never };

/**
 * Holds the engine's contours, as traced and before any container turned them, against the arrangement of the
 * operands (null or empty ones count as empty). Gives the contours to go on with; those that it drops are
 * released.
 */
QVector<vxPath *> audit(const QVector<const XPath *> &operands, Operation operation,
                        const QVector<vxPath *> &traced, const RunNotes &notes, AuditMode mode,
                        vxBooleanReport &report);

/**
 * Whether the cleaned copy of an operand fills what the original fills, in contours as simple as the
 * arrangement's. Costs an audit.
 */
bool confirmsCleaning(const XPath &original, const XPath &copy);

/** The boolean behind XPath's operations; see XPath::computeBoolean. */
XPath *computeBoolean(XPath *path1, XPath *path2, int op, AuditMode mode, vxBooleanReport &report);

/** The open-path variant; see XPath::computeOpenBoolean. */
XPath *computeOpenBoolean(XPath *path1, XPath *path2, int op, vxBooleanReport &report);

} // namespace vx
