#include "area.h"
#include "pathdata.h"
#include "printing.h"
#include "textfile.h"

#include <pzgraphics/xpath.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <cmath>

namespace {

const QString square = "M 0 0 L 100 0 L 100 100 L 0 100 Z";
const QString shifted = "M 50 50 L 150 50 L 150 150 L 50 150 Z";
const QString hundredAlongX = "M 0 0 L 100 0";

struct Outcome {
    int status;
    QString out;
    QString err;
};

class CommandLine : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static int argc = 1;
        static char name[] = "pz_tool_tests";
        static char *argv[] = { name, nullptr };
        static QCoreApplication application(argc, argv);
    }

    Outcome run(const QStringList &arguments, const QString &outputFile = QString())
    {
        QProcess process;
        process.setWorkingDirectory(m_dir.path());
        if (!outputFile.isEmpty())
            process.setStandardOutputFile(outputFile);
        process.start(PZPATH_BINARY, arguments);
        process.waitForFinished(120000);
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                 QString::fromUtf8(process.readAllStandardError()) };
    }

    /** What a command that succeeds prints, without the last line end. */
    QString text(const QStringList &arguments)
    {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err.toStdString();
        EXPECT_TRUE(outcome.out.endsWith('\n'));
        return outcome.out.chopped(1);
    }

    double area(const QString &pathData) { return filledArea(*toXPath(parsePathData(pathData))); }

    /** The same words, and numbers within a millionth. */
    static void expectNear(const QString &actual, const QString &expected)
    {
        const QStringList got = actual.split(QRegExp("\\s"));
        const QStringList wanted = expected.split(QRegExp("\\s"));
        bool same = got.size() == wanted.size();
        for (int i = 0; same && i < got.size(); ++i)
            same = got[i] == wanted[i] || qAbs(got[i].toDouble() - wanted[i].toDouble()) <= 1e-6;
        EXPECT_TRUE(same) << actual.toStdString() << "\nwanted " << expected.toStdString();
    }

    void expectFailure(const QStringList &arguments, const QString &complaint)
    {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments.join(' ').toStdString();
        EXPECT_EQ(outcome.out, "") << arguments.join(' ').toStdString();
        EXPECT_EQ(outcome.err.count('\n'), 1) << outcome.err.toStdString();
        EXPECT_TRUE(outcome.err.contains(complaint)) << outcome.err.toStdString();
    }

    QString file(const char *name) { return m_dir.filePath(name); }

    QTemporaryDir m_dir;
};

} // namespace

TEST_F(CommandLine, booleans_print_path_data)
{
    EXPECT_DOUBLE_EQ(area(text({ "unite", square, shifted })), 17500);
    EXPECT_DOUBLE_EQ(area(text({ "intersect", square, shifted })), 2500);
    const QStringList parts = text({ "divide", square, shifted }).split('\n');
    ASSERT_EQ(parts.size(), 2);
    EXPECT_DOUBLE_EQ(area(parts[0]), 7500);
    EXPECT_DOUBLE_EQ(area(parts[1]), 2500);
    // Half a unit is a shape to the engine and one point to the application's element paths.
    const QString speck = "M 0 0 L 0.5 0 L 0.5 0.5 Z";
    EXPECT_DOUBLE_EQ(area(text({ "intersect", square, speck })), 0.125);
    EXPECT_EQ(area(text({ "intersect", "--elements", square, speck })), 0);
}

TEST_F(CommandLine, an_open_first_path_is_cut)
{
    expectNear(text({ "intersect", "M -50 20 L 150 20", square }), "M 0 20 L 100 20");
    expectNear(text({ "subtract", "M -50 20 L 150 20", square }), "M -50 20 L 0 20 M 100 20 L 150 20");
    expectFailure({ "unite", "M -50 20 L 150 20", square }, "open first path");
    expectFailure({ "divide", hundredAlongX, "M 50 -50 L 50 50" }, "open first path");
}

TEST_F(CommandLine, queries)
{
    EXPECT_EQ(text({ "contains", "-5", "-.5e1", "M -10 -10 L 0 -10 L 0 0 L -10 0 Z" }), "inside");
    EXPECT_EQ(text({ "contains", "5", "-5", "M -10 -10 L 0 -10 L 0 0 L -10 0 Z" }), "outside");
    QStringList crossings = text({ "crossings", square, shifted }).split('\n');
    crossings.sort();
    EXPECT_EQ(crossings, (QStringList{ "100 50", "50 100" }));
    EXPECT_EQ(text({ "length", "M 0 0 L 30 40 M 0 0 L 10 0" }), "60");
    expectNear(text({ "at", "-30", hundredAlongX }), "point 70 0\ntangent 1 0");
    // Drawn counter-clockwise, and so walked.
    expectNear(text({ "at", "30", "M 0 0 L 0 100 L 100 100 Z" }), "point 0 30\ntangent 0 1");
}

TEST_F(CommandLine, effects)
{
    expectNear(text({ "trim", "10", "20", hundredAlongX }), "M 10 0 L 80 0");
    EXPECT_EQ(text({ "reverse", "M 0 0 C 10 0 20 10 20 20 L 9 9" }), "M 9 9 L 20 20 C 20 10 10 0 0 0");
    // Each corner loses what a quarter disc leaves of its square.
    EXPECT_NEAR(area(text({ "round2", "20", square })), 10000 - 4 * 400 * (1 - M_PI / 4), 1);
    EXPECT_GT(text({ "manual", "3", "5", hundredAlongX }).count('L'), 15);
    // Left as it is, but not in silence.
    const Outcome untrimmed = run({ "trim", "0.5", "0", hundredAlongX });
    EXPECT_EQ(untrimmed.out, hundredAlongX + "\n");
    EXPECT_TRUE(untrimmed.err.contains("nothing was trimmed"));
}

TEST_F(CommandLine, errors_are_one_line_and_status_two)
{
    expectFailure({}, "no command");
    expectFailure({ "weld", square, shifted }, "unknown command 'weld'");
    expectFailure({ "unite", square }, "unite takes A B, not 1 argument");
    expectFailure({ "unite", square, "M 0\n0\nX" }, "unknown command 'X'");
    expectFailure({ "unite", square, "@absent" }, "cannot read absent");
    expectFailure({ "unite", square, shifted, "--json" }, "json");
    expectFailure({ "exclude", "--elements", square, shifted }, "exclude is not offered on element paths");
    expectFailure({ "smooth", "5", square }, "TYPE is 1, 2, 3 or 4, not 5");
    expectFailure({ "at", "101", hundredAlongX }, "beyond the length of 100");
    expectFailure({ "corpus", PZ_TEST_DATA "/icons.tsv", "--reps", "-1" }, "--reps needs a whole number");
    expectFailure({ "corpus", PZ_TEST_DATA "/icons.tsv", "--truth", PZ_TEST_DATA "/maps.truth.tsv" },
                  "no case is named");
    const Outcome full = run({ "length", square }, "/dev/full");
    EXPECT_EQ(full.status, 2);
    EXPECT_TRUE(full.err.contains("cannot write to standard output"));
}

TEST_F(CommandLine, pictures_are_whole_or_not_there)
{
    text({ "unite", square, shifted, "-o", "out.png" });
    const QImage image(file("out.png"));
    EXPECT_EQ(image.size(), QSize(800, 800));
    EXPECT_EQ(image.pixelColor(2, 2), QColor(Qt::white));
    EXPECT_NE(image.pixelColor(400, 400), QColor(Qt::white));

    EXPECT_EQ(run({ "gallery", PZ_TEST_DATA "/degenerate.tsv", "-o", "out.svg" }).status, 0);
    QXmlStreamReader xml(readTextFile(file("out.svg")));
    int paths = 0;
    while (!xml.atEnd())
        paths += xml.readNext() == QXmlStreamReader::StartElement && xml.name() == "path";
    EXPECT_FALSE(xml.hasError());
    EXPECT_GT(paths, 50);

    EXPECT_EQ(text({ "length", square, "-o", "length.png" }), "400");
    expectNear(text({ "at", "30", hundredAlongX, "-o", "at.png" }), "point 30 0\ntangent 1 0");
    EXPECT_FALSE(QImage(file("length.png")).isNull());
    EXPECT_FALSE(QImage(file("at.png")).isNull());

    const QByteArray before = readTextFile(file("out.png"));
    expectFailure({ "unite", square, "M 0 0 L 1", "-o", "out.png" }, "path B");
    expectFailure({ "unite", square, shifted, "-o", "absent/out.png" }, "cannot write absent/out.png");
    expectFailure({ "unite", square, shifted, "-o", "out.jpeg2" }, "kind of picture");
    EXPECT_EQ(readTextFile(file("out.png")), before);
    EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files),
              (QStringList{ "at.png", "length.png", "out.png", "out.svg" }));
}

TEST_F(CommandLine, corpus_finds_the_wrong_areas)
{
    writeFile(file("broken.tsv"), "one\tsimple\t" + square.toUtf8() + "\tM 0 0 L 1\n");
    expectFailure({ "corpus", "broken.tsv" }, "L with 1 of 2 numbers");
    writeFile(file("cases.tsv"), "one\tsimple,lines\t" + square.toUtf8() + "\t" + shifted.toUtf8() +
                                     "\ntwo\tsimple\t" + square.toUtf8() + "\t\n");
    EXPECT_EQ(text({ "corpus", "cases.tsv", "--list" }), "one\tsimple,lines\ntwo\tsimple");
    // The second union is 0.3 % off; the joint box of the two is the square itself.
    writeFile(file("truth.tsv"), "one\t10000\t10000\t17500\t2500\t7500\t15000\n"
                                 "two\t10000\t0\t10030\t0\t10000\t10000\n");
    const QStringList run{ "corpus", "cases.tsv", "--truth", "truth.tsv" };
    const QStringList lines = text(run).split('\n');
    EXPECT_EQ(lines.filter(QRegExp("^(one|two)\t")).size(), 8 + 1);
    EXPECT_EQ(lines.filter(QRegExp("^all +unite +2 +1 ")).size(), 1);
    EXPECT_EQ(lines.filter(QRegExp("^lines +unite +1 +0 ")).size(), 1);
    EXPECT_TRUE(lines.last().startsWith("two\tunite\t10000\t10030\t3.00e-03\tok"));
    EXPECT_FALSE(text(run + QStringList{ "--tolerance", "0.01" }).contains("wrong:"));
    QFile::copy(file("truth.tsv"), file("cases.truth.tsv"));
    EXPECT_TRUE(text({ "corpus", "cases.tsv", "cases.truth.tsv" }).contains("two\tunite\t10000\t10030"));
    EXPECT_EQ(text({ "corpus", "cases.tsv", "--op", "intersect", "--no-fork", "--reps", "3" }).count('\n'),
              2);
}
