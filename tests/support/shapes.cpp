#include "shapes.h"

#include "corpus.h"
#include "pathdata.h"

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>

namespace shapes {

namespace {

double bernstein(const double c[4], double t)
{
    const double s = 1 - t;
    return s * s * s * c[0] + 3 * s * s * t * c[1] + 3 * s * t * t * c[2] + t * t * t * c[3];
}

double slope(const double c[4], double t)
{
    const double s = 1 - t;
    return 3 * (s * s * (c[1] - c[0]) + 2 * s * t * (c[2] - c[1]) + t * t * (c[3] - c[2]));
}

/** Times in (0, 1) where the slope p t^2 + 2 q t + a is zero, ascending, then 1. */
std::vector<double> cutTimes(const double c[4])
{
    const double a = c[1] - c[0];
    const double p = a - 2 * (c[2] - c[1]) + c[3] - c[2];
    const double q = c[2] - 2 * c[1] + c[0];
    const double root = std::sqrt(q * q - p * a); // NaN without turning points, which passes no test below
    const double r = -(q + (q < 0 ? -root : root));
    std::vector<double> times = { 1 };
    for (double t : { r / p, a / r }) {
        if (t > 0 && t < 1)
            times.push_back(t);
    }
    std::sort(times.begin(), times.end());
    return times;
}

} // namespace

XPathPtr read(const std::string &data)
{
    return toXPath(parsePathData(QString::fromStdString(data)));
}

std::string text(const XPath &path)
{
    return toText(commandsOf(path)).toStdString();
}

std::string rectangle(double x, double y, double width, double height)
{
    std::ostringstream out;
    out.precision(17);
    out << "M " << x << ' ' << y << " L " << x + width << ' ' << y << " L " << x + width << ' ' << y + height
        << " L " << x << ' ' << y + height << " Z ";
    return out.str();
}

std::string ellipse(double cx, double cy, double rx, double ry)
{
    // Control distance for a quarter: meets the circle in its middle.
    const double k = 4.0 / 3 * (std::sqrt(2.0) - 1);
    const vxPoint center(cx, cy);
    const vxPoint axes[] = { { rx, 0 }, { 0, ry }, { -rx, 0 }, { 0, -ry } };
    std::ostringstream out;
    out.precision(17);
    out << "M " << cx + rx << ' ' << cy;
    for (int i = 0; i < 4; ++i) {
        const vxPoint from = axes[i];
        const vxPoint to = axes[(i + 1) % 4];
        out << " C";
        for (const vxPoint &p : { from.add(to.multiply(k)), to.add(from.multiply(k)), to })
            out << ' ' << center.add(p).x << ' ' << center.add(p).y;
    }
    return out.str() + " Z ";
}

QVector<double> numbers(const std::string &list)
{
    std::istringstream in(list);
    QVector<double> values;
    for (std::string word; in >> word;)
        values.append(std::stod(word)); // knows nan and inf, which a stream does not read
    return values;
}

Outline::Outline(const XPath &path)
{
    for (const vxPath *contour : path.children) {
        const QList<vxSegment *> segments = contour->getSegments();
        for (int i = 0; i < segments.size(); ++i) {
            const vxSegment *s = segments.at(i);
            const vxSegment *e = segments.at((i + 1) % segments.size());
            const double drawn = contour->isClosed() || i + 1 < segments.size() ? 1 : 0;
            addCurve({ s->getPoint(), s->getPoint().add(s->getHandleOut().multiply(drawn)),
                       e->getPoint().add(e->getHandleIn().multiply(drawn)), e->getPoint() });
        }
    }
}

void Outline::addCurve(const vxPoint (&p)[4])
{
    if (m_pieces.empty())
        low = high = p[0];
    Piece piece = {};
    for (int i = 0; i < 4; ++i) {
        piece.x[i] = p[i].x;
        piece.y[i] = p[i].y;
        low = vxPoint(std::min(low.x, p[i].x), std::min(low.y, p[i].y));
        high = vxPoint(std::max(high.x, p[i].x), std::max(high.y, p[i].y));
    }
    for (double cut : cutTimes(piece.y)) {
        const double y0 = bernstein(piece.y, piece.from);
        const double y1 = bernstein(piece.y, cut);
        piece.to = cut;
        piece.low = std::min(y0, y1);
        piece.high = std::max(y0, y1);
        m_pieces.push_back(piece);
        piece.from = cut;
    }
}

double Outline::Piece::xAt(double level) const
{
    if (x[0] == x[1] && y[0] == y[1] && x[2] == x[3] && y[2] == y[3])
        return x[0] + (x[3] - x[0]) * ((level - y[0]) / (y[3] - y[0]));
    double below = from;
    double above = to;
    if (bernstein(y, to) < bernstein(y, from))
        std::swap(below, above);
    double t = (from + to) / 2;
    for (int i = 0; i < 80; ++i) {
        const double f = bernstein(y, t) - level;
        (f > 0 ? above : below) = t;
        double next = t - f / slope(y, t);
        if (!(next > std::min(below, above) && next < std::max(below, above)))
            next = (below + above) / 2;
        if (std::fabs(next - t) < 1e-15)
            break;
        t = next;
    }
    return bernstein(x, t);
}

bool Outline::contains(const vxPoint &p) const
{
    // Half open, so that a vertex on the level counts once.
    return std::count_if(m_pieces.begin(), m_pieces.end(),
                         [&p](const Piece &piece) {
                             return piece.low <= p.y && p.y < piece.high && piece.xAt(p.y) < p.x;
                         }) %
           2;
}

bool Outline::isOff(const vxPoint &p, double d) const
{
    const vxPoint around[] = { { p.x - d, p.y }, { p.x + d, p.y }, { p.x, p.y - d }, { p.x, p.y + d } };
    return std::all_of(around, around + 4, [&](const vxPoint &q) { return contains(q) == contains(p); });
}

double Outline::lengthInside(double level) const
{
    std::vector<double> crossings;
    for (const Piece &piece : m_pieces) {
        if (piece.low <= level && level < piece.high)
            crossings.push_back(piece.xAt(level));
    }
    std::sort(crossings.begin(), crossings.end());
    double length = 0;
    for (size_t i = 1; i < crossings.size(); i += 2)
        length += crossings[i] - crossings[i - 1];
    return length;
}

double Outline::area() const
{
    std::vector<double> levels;
    for (const Piece &piece : m_pieces) {
        levels.push_back(piece.low);
        levels.push_back(piece.high);
    }
    // Where outlines cross themselves the length has a kink, which narrow strips keep small.
    for (int i = 0; i <= 256; ++i)
        levels.push_back(low.y + (high.y - low.y) * i / 256);
    std::sort(levels.begin(), levels.end());
    // Five Gauss points in s for y = middle - half cos(pi s): that takes the square roots out of the length
    // at turning points, where the sine vanishes.
    const double node[] = { 0.0469100770306680, 0.2307653449471585, 0.5, 0.7692346550528415,
                            0.9530899229693320 };
    const double weight[] = { 0.1184634425280945, 0.2393143352496832, 0.2844444444444444, 0.2393143352496832,
                              0.1184634425280945 };
    const double pi = std::acos(-1.0);
    double share[5];
    double total = 0;
    for (int k = 0; k < 5; ++k)
        total += share[k] = weight[k] * std::sin(pi * node[k]);
    double sum = 0;
    for (size_t i = 1; i < levels.size(); ++i) {
        const double middle = (levels[i] + levels[i - 1]) / 2;
        const double half = (levels[i] - levels[i - 1]) / 2;
        // Divided by the total: then a length that grows evenly is integrated exactly.
        for (int k = 0; k < 5 && half > 1e-12 * (high.y - low.y); ++k)
            sum += 2 * half * share[k] / total * lengthInside(middle - half * std::cos(pi * node[k]));
    }
    return sum;
}

namespace {

void appendCases(const QString &file, std::vector<Case> &result)
{
    const auto truth = readTruth(file + ".truth.tsv");
    for (const CorpusCase &entry : readCorpus(file + ".tsv")) {
        EXPECT_TRUE(truth.contains(entry.id)) << entry.id.toStdString();
        const CorpusTruth known = truth.value(entry.id);
        const auto &areas = known.results; // the union before the intersection
        result.push_back({ entry.id.toStdString(),
                           entry.a.toStdString(),
                           entry.b.toStdString(),
                           entry.tags.contains("simple"),
                           { 0, areas[1], areas[0], areas[2], areas[3] } });
    }
}

} // namespace

std::vector<Case> cases(const std::vector<std::string> &families)
{
    std::vector<Case> result;
    for (const std::string &family : families)
        appendCases(QStringLiteral(PZ_TEST_DATA "/") + QString::fromStdString(family), result);
    return result;
}

std::vector<Case> corpusCases()
{
    const QString folder = qEnvironmentVariable("PZ_CORPUS");
    if (folder.isEmpty())
        return cases();
    std::vector<Case> result;
    for (const QFileInfo &file : QDir(folder).entryInfoList({ "*.truth.tsv" }, QDir::Files, QDir::Name)) {
        if (!file.fileName().startsWith("scale-"))
            appendCases(file.path() + '/' + file.fileName().chopped(int(strlen(".truth.tsv"))), result);
    }
    EXPECT_FALSE(result.empty()) << "no NAME.truth.tsv in " << folder.toStdString();
    return result;
}

int countFrom(const char *variable, int fallback)
{
    bool isNumber = false;
    const int count = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? count : fallback;
}

} // namespace shapes
