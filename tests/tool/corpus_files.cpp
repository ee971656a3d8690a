#include "corpus.h"
#include "printing.h"
#include "textfile.h"
#include "toolerror.h"

#include <pzgraphics/xpath.h>

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <zlib.h>

namespace {

const QByteArray twoCases = "first\tsimple,lines\tM 0 0 L 9 0 L 9 9 Z\tM 1 1 L 5 1 L 5 5 Z\r\n"
                            "\n"
                            "second\tdirty\tM 0 0 L 4 0 L 4 4 Z\t\n";

class CorpusFiles : public testing::Test
{
protected:
    QString write(const char *name, const QByteArray &text)
    {
        writeFile(m_dir.filePath(name), text);
        return m_dir.filePath(name);
    }

    template <typename Read>
    static QString complaintOf(Read read)
    {
        try {
            read();
        } catch (const ToolError &error) {
            return error.text;
        }
        return "nothing was wrong";
    }

    QTemporaryDir m_dir;
};

} // namespace

TEST_F(CorpusFiles, packed_and_plain_files_read_alike)
{
    const QString packed = m_dir.filePath("cases.tsv.gz");
    gzFile file = gzopen(packed.toLocal8Bit().constData(), "wb");
    gzwrite(file, twoCases.constData(), static_cast<unsigned>(twoCases.size()));
    gzclose(file);

    for (const QString &name : { packed, write("cases.tsv", twoCases) }) {
        const QVector<CorpusCase> cases = readCorpus(name);
        ASSERT_EQ(cases.size(), 2);
        EXPECT_EQ(cases[0].id, "first");
        EXPECT_EQ(cases[0].tags, (QStringList{ "simple", "lines" }));
        EXPECT_EQ(cases[0].b, "M 1 1 L 5 1 L 5 5 Z");
        EXPECT_EQ(jointBoxArea(readOperands(cases[0])), 81);
        EXPECT_TRUE(readOperands(cases[1]).b->children.isEmpty());
    }
}

TEST_F(CorpusFiles, what_is_wrong_is_named)
{
    const QString absent = m_dir.filePath("absent.tsv");
    EXPECT_EQ(complaintOf([&] { readCorpus(absent); }), "cannot read " + absent);
    EXPECT_EQ(complaintOf([&] { readCorpus(m_dir.path()); }), "cannot read " + m_dir.path());
    // Half a packed file must not pass for a short one.
    const QString broken = write("broken.gz", QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\3rubbish", 17));
    EXPECT_EQ(complaintOf([&] { readCorpus(broken); }), "cannot read " + broken);
    const QString empty = write("empty.tsv", "\n");
    EXPECT_EQ(complaintOf([&] { readCorpus(empty); }), empty + ": no cases");
    const QString shortRow = write("short.tsv", "\nid\ttags\tM 0 0\n");
    EXPECT_EQ(complaintOf([&] { readCorpus(shortRow); }), shortRow + ":2: 3 fields instead of 4");
    const QString word = write("word.tsv", "id\t1\t2\t3\tfour\t5\t6\n");
    EXPECT_EQ(complaintOf([&] { readTruth(word); }), word + ": id: not a number: 'four'");
    EXPECT_EQ(complaintOf([] {
                  readOperands({ "odd", {}, "M 0 0", "M 0" });
              }),
              "odd: path B: M with 1 of 2 numbers at character 1");
}
