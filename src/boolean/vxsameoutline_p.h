#pragma once

#include <set>
#include <utility>

class vxPath;

namespace vx {

/** Compares outlines, and remembers which pairs differ: to ask for each of their segments costs little. */
class OutlineComparison
{
public:
    /** Whether two contours are the same outline, wherever they start and whichever way they run. */
    bool areSame(const vxPath &path1, const vxPath &path2);

private:
    std::set<std::pair<const vxPath *, const vxPath *>> m_different;
};

} // namespace vx
