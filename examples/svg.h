#pragma once

#include <QFile>
#include <QPainterPath>
#include <QTextStream>
#include <QVector>

/**
 * Writes painter paths as one SVG: the first ones filled grey, the last one filled green. False when it
 * cannot.
 */
inline bool writeSvg(const QString &name, const QVector<QPainterPath> &paths)
{
    QRectF box;
    for (const QPainterPath &path : paths)
        box |= path.boundingRect();
    box.adjust(-10, -10, 10, 10);

    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream out(&file);
    out << "<svg xmlns='http://www.w3.org/2000/svg' viewBox='" << box.x() << ' ' << box.y() << ' '
        << box.width() << ' ' << box.height() << "'>\n";
    for (int i = 0; i < paths.size(); ++i) {
        out << "<path fill-rule='evenodd' stroke='black' fill-opacity='0.4' fill='"
            << (i + 1 < paths.size() ? "silver" : "seagreen") << "' d='";
        for (int k = 0; k < paths[i].elementCount(); ++k) {
            const QPainterPath::Element element = paths[i].elementAt(k);
            static const char *const letters[] = { "M ", "L ", "C ", "" };
            out << letters[element.type] << element.x << ' ' << element.y << ' ';
        }
        out << "'/>\n";
    }
    out << "</svg>\n";
    return out.status() == QTextStream::Ok;
}
