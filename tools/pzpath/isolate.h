#pragma once

#include <functional>

/** How a job that ran in a process of its own came to its end. */
enum class JobEnd { Done, TimedOut, Crashed };

/**
 * Runs jobs 0 to count - 1 in order in a forked child, so that one that hangs or crashes costs its own result
 * only: a new child goes on with the next job. The child serves many jobs because a fresh one pays for its
 * copied pages.
 *
 * job fills its record (recordSize bytes of plain data, at most 512) inside the child; finished receives it
 * in the parent, or null unless the job is Done. timeout in whole seconds for each job, 0 for none. Throws
 * ToolError when no child can be started.
 */
void runIsolated(int count, int timeout, int recordSize, const std::function<void(int, void *)> &job,
                 const std::function<void(int, JobEnd, const void *)> &finished);
