#pragma once

#include "vxaudit_p.h"
#include "vxbooleanreport.h"

class XPath;

namespace vx {

/** The boolean behind XPath's operations; see XPath::computeBoolean. */
XPath *computeBoolean(XPath *path1, XPath *path2, int op, AuditMode mode, vxBooleanReport &report);

/** The open-path variant; see XPath::computeOpenBoolean. */
XPath *computeOpenBoolean(XPath *path1, XPath *path2, int op, vxBooleanReport &report);

} // namespace vx
