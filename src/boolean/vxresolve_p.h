#pragma once

class XPath;

namespace vx {

struct RunNotes;

/**
 * XPath::resolveCrossings, with notes of what it met. Whether path had crossings or overlaps of its own. If
 * not, its contours are those that it had, but for which remain, their order and which way round they run.
 */
bool resolveCrossings(XPath &path, RunNotes &notes);

} // namespace vx
