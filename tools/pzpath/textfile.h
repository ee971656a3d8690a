#pragma once

#include <QByteArray>
#include <QString>

/** The whole file, unpacked when it is compressed by gzip. Throws ToolError. */
QByteArray readTextFile(const QString &name);

/** Puts all of data into a file or leaves what was there. Throws ToolError. */
void writeFile(const QString &name, const QByteArray &data);
