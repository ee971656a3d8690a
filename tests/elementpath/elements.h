#pragma once

#include "pzpath.h"

#include <QStringList>

#include <cmath>
#include <limits>
#include <vector>

/** Element lists as text, and mathematics that owes nothing to the library. */
namespace elements {

const double undefined = std::numeric_limits<double>::quiet_NaN();
const double inf = std::numeric_limits<double>::infinity();

/**
 * Elements as they are, without merging: "M 0 0 L 10 0 C 1 2 3 4 5 6 Z", D a lone data element; Z takes the
 * move's point.
 */
inline PZPath read(const QString &text)
{
    PZPath path;
    QPointF start;
    const QStringList tokens = text.split(' ', Qt::SkipEmptyParts);
    for (int i = 0; i < tokens.count();) {
        const int type = QString("MLCDZ").indexOf(tokens.at(i++));
        if (type == PZPath::CloseElement)
            path.append({ start.x(), start.y(), 0, 0, type });
        const int points = type == PZPath::CloseElement ? 0 : type == PZPath::CurveToElement ? 3 : 1;
        for (int k = 0; k < points; ++k, i += 2)
            path.append(
                { tokens.value(i).toDouble(), tokens.value(i + 1).toDouble(), 0, 0, k > 0 ? 3 : type });
        if (type == PZPath::MoveToElement)
            start = path.last().toPoint();
    }
    return path;
}

/** The inverse; a close element away from its move shows as Z(x y). */
inline std::string text(const PZPath &path)
{
    QStringList out;
    QPointF start;
    int data = 0;
    for (const PZPath::PZElement &e : path) {
        const QString point = QString("%1 %2").arg(e.x + 0.0, 0, 'g', 7).arg(e.y + 0.0, 0, 'g', 7);
        if (e.type == PZPath::MoveToElement)
            start = e.toPoint();
        if (e.type == PZPath::CloseElement)
            out << (e.toPoint() == start ? "Z" : "Z(" + point + ")");
        else
            out << (e.type == 3 && data > 0 ? point : QString("MLCD").mid(e.type, 1) + " " + point);
        data = e.type == PZPath::CurveToElement ? 2 : data - 1;
    }
    return out.join(' ').toStdString();
}

/** Points along all subpaths, n to a curve, by the Bernstein form. */
inline std::vector<QPointF> outline(const PZPath &path, int n)
{
    std::vector<QPointF> points;
    for (int i = 0; i < path.count(); ++i) {
        if (path.at(i).type != PZPath::CurveToElement) {
            points.push_back(path.at(i).toPoint());
            continue;
        }
        const QPointF a = path.at(i - 1).toPoint(), b = path.at(i).toPoint();
        const QPointF c = path.at(i + 1).toPoint(), d = path.at(i + 2).toPoint();
        for (int k = 1; k <= n; ++k) {
            const double t = double(k) / n, u = 1 - t;
            points.push_back(u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d);
        }
        i += 2;
    }
    return points;
}

inline double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/** Length of a path of one subpath. */
inline double length(const PZPath &path)
{
    double sum = 0;
    const std::vector<QPointF> points = outline(path, 20000);
    for (size_t i = 1; i < points.size(); ++i)
        sum += distance(points[i - 1], points[i]);
    return sum;
}

} // namespace elements
