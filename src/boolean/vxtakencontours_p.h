#pragma once

#include <QVector>

class XPath;
class vxPath;

namespace vx {

/** The contours of a working copy, which lets go of them: count 0, the caller's. */
QVector<vxPath *> takeChildren(XPath &copy);
/** The same for those that a walk has taken, which then are as if the walk had made them. */
void letGoOfTaken(XPath &copy);

} // namespace vx
