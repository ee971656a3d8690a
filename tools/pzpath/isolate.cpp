#include "isolate.h"

#include "toolerror.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

/**
 * The child's whole life. An exception must not climb into the parent's code, which the child has a copy of,
 * so it counts as a crash. A record is written in one piece because it is shorter than what a pipe takes at
 * once.
 */
[[noreturn]] void serve(int out, int first, int count, int timeout, std::vector<char> &record,
                        const std::function<void(int, void *)> &job) noexcept
{
    // An alarm that was blocked or ignored by whoever started this program would never end a job.
    std::signal(SIGALRM, SIG_DFL);
    for (int i = first; i < count; ++i) {
        alarm(static_cast<unsigned>(timeout));
        job(i, record.data());
        alarm(0);
        if (write(out, record.data(), record.size()) != static_cast<ssize_t>(record.size()))
            _exit(1);
    }
    _exit(0);
}

bool readRecord(int in, std::vector<char> &record)
{
    size_t have = 0;
    while (have < record.size()) {
        const ssize_t got = read(in, record.data() + have, record.size() - have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        have += static_cast<size_t>(got);
    }
    return true;
}

JobEnd endOf(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM ? JobEnd::TimedOut : JobEnd::Crashed;
}

/** One child from job first on; returns the job after the last one that was reported. */
int runChild(int first, int count, int timeout, std::vector<char> &record,
             const std::function<void(int, void *)> &job,
             const std::function<void(int, JobEnd, const void *)> &finished)
{
    int ends[2];
    // What waits in the output buffers would come out once more when the child's copy is flushed.
    std::fflush(nullptr);
    if (pipe(ends) != 0)
        throw ToolError{ QStringLiteral("cannot open a pipe") };
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        serve(ends[1], first, count, timeout, record, job);
    }
    close(ends[1]);
    int next = first;
    while (child > 0 && next < count && readRecord(ends[0], record))
        finished(next++, JobEnd::Done, record.data());
    close(ends[0]);
    if (child < 0)
        throw ToolError{ QStringLiteral("cannot start a process") };
    const JobEnd end = endOf(child);
    if (next < count)
        finished(next++, end, nullptr);
    return next;
}

} // namespace

void runIsolated(int count, int timeout, int recordSize, const std::function<void(int, void *)> &job,
                 const std::function<void(int, JobEnd, const void *)> &finished)
{
    std::vector<char> record(static_cast<size_t>(recordSize));
    for (int next = 0; next < count;)
        next = runChild(next, count, timeout, record, job, finished);
}
