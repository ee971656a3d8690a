#include "textfile.h"

#include "toolerror.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <memory>
#include <zlib.h>

QByteArray readTextFile(const QString &name)
{
    // zlib opens a folder without complaint and fails on the first read.
    const QFileInfo info(name);
    if (!info.exists() || info.isDir() || !info.isReadable())
        throw ToolError{ QStringLiteral("cannot read %1").arg(name) };

    // gzread hands uncompressed files through as they are.
    const std::unique_ptr<gzFile_s, int (*)(gzFile)> file(gzopen(QFile::encodeName(name).constData(), "rb"),
                                                          gzclose);
    QByteArray text;
    char block[1 << 16];
    int got = 0;
    while (file && (got = gzread(file.get(), block, sizeof block)) > 0)
        text.append(block, got);
    // A packed file that was cut off ends without complaint from gzread.
    int state = Z_OK;
    if (file)
        gzerror(file.get(), &state);
    if (!file || got < 0 || state != Z_OK)
        throw ToolError{ QStringLiteral("cannot read %1").arg(name) };
    return text;
}

void writeFile(const QString &name, const QByteArray &data)
{
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        throw ToolError{ QStringLiteral("cannot write %1: %2").arg(name, file.errorString()) };
}
