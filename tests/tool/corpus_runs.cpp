#include "isolate.h"
#include "runner.h"
#include "toolerror.h"

#include <pzgraphics/xpath.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <unistd.h>

namespace {

RunOptions allOperations(bool isolated)
{
    RunOptions options;
    for (const Operation &operation : operations)
        options.operations << &operation;
    options.isolated = isolated;
    return options;
}

} // namespace

TEST(IsolatedRuns, lose_only_the_job_that_fails)
{
    struct Row {
        int index;
        JobEnd end;
        int value;
    };
    QVector<Row> rows;
    runIsolated(
        6, 1, sizeof(int),
        [](int index, void *record) {
            if (index == 1)
                std::raise(SIGKILL);
            if (index == 2)
                pause();
            if (index == 3)
                throw ToolError{ "out of the job" };
            const int square = index * index;
            std::memcpy(record, &square, sizeof square);
        },
        [&](int index, JobEnd end, const void *record) {
            int value = -1;
            if (record)
                std::memcpy(&value, record, sizeof value);
            rows.append({ index, end, value });
        });

    const Row expected[] = { { 0, JobEnd::Done, 0 },      { 1, JobEnd::Crashed, -1 },
                             { 2, JobEnd::TimedOut, -1 }, { 3, JobEnd::Crashed, -1 },
                             { 4, JobEnd::Done, 16 },     { 5, JobEnd::Done, 25 } };
    ASSERT_EQ(rows.size(), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(rows[i].index, expected[i].index);
        EXPECT_EQ(rows[i].end, expected[i].end) << i;
        EXPECT_EQ(rows[i].value, expected[i].value) << i;
    }
}

TEST(CorpusRuns, are_the_same_in_and_out_of_process)
{
    const QVector<CorpusCase> cases = readCorpus(QStringLiteral(PZ_TEST_DATA "/glyphs.tsv"));
    QVector<RunResult> inside;
    runCorpus(cases, allOperations(false),
              [&](const CorpusCase &, const Operation &, const RunResult &result) { inside << result; });
    ASSERT_EQ(inside.size(), 4 * cases.size());
    int next = 0;
    runCorpus(cases, allOperations(true),
              [&](const CorpusCase &, const Operation &, const RunResult &result) {
                  EXPECT_GT(result.area, 0);
                  EXPECT_EQ(result.area, inside[next].area);
                  EXPECT_EQ(result.segments, inside[next++].segments);
              });
    EXPECT_EQ(next, inside.size());
}
