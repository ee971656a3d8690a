#pragma once

#include "vxrect.h"
#include "xpath.h"

#include <memory>
#include <random>
#include <string>
#include <vector>

/**
 * What tests of several rooms share: shapes as path data, sample files, and measures that share no code with
 * the library.
 */
namespace shapes {

using XPathPtr = std::unique_ptr<XPath>;

/** As the tool reads and writes path data; equal texts mean equal bits but for the sign of a zero. */
XPathPtr read(const std::string &data);
std::string text(const XPath &path);
std::string rectangle(double x, double y, double width, double height);
/** Four cubics, from the rightmost point. */
std::string ellipse(double cx, double cy, double rx, double ry);
/** The numbers of a text with spaces between. */
QVector<double> numbers(const std::string &list);

/**
 * The filled area of a path by the even-odd rule, worked out from y-monotone pieces of its curves: crossings
 * with a level come from bracketed Newton steps, the area from Gauss points between all heights where pieces
 * begin or end. Open contours are closed by a line.
 */
class Outline
{
public:
    explicit Outline(const XPath &path);

    bool contains(const vxPoint &p) const;
    /** Whether p and its neighbours at this distance, left, right, above and below, are all in or all out. */
    bool isOff(const vxPoint &p, double distance) const;
    /** Good to about 1e-7 of the area. */
    double area() const;

    /** Of the control points. */
    vxPoint low, high;

private:
    struct Piece {
        double x[4], y[4];
        double from, to, low, high;

        double xAt(double level) const;
    };

    void addCurve(const vxPoint (&p)[4]);
    double lengthInside(double level) const;

    std::vector<Piece> m_pieces;
};

/** Even-odd area in path units squared. */
inline double areaOf(const XPath &path)
{
    return Outline(path).area();
}

/** The same numbers on every machine, which the standard's distributions do not promise. */
class Random
{
public:
    explicit Random(unsigned seed) : m_engine(seed) {}
    double between(double low, double high) { return low + (high - low) * (m_engine() / 4294967296.0); }
    vxPoint between(const vxPoint &low, const vxPoint &high)
    {
        const double x = between(low.x, high.x);
        return vxPoint(x, between(low.y, high.y));
    }

private:
    std::mt19937 m_engine;
};

/** Two operands and the true areas, from tests/data; area by operation code, intersect 1 to exclude 4. */
struct Case {
    std::string id, a, b;
    bool isSimple;
    double area[5];
};

/** The cases of some families; a failure where one has no areas. */
std::vector<Case> cases(const std::vector<std::string> &families = { "icons", "glyphs", "overlap",
                                                                     "degenerate", "maps", "hard" });

/**
 * The cases of every family in the folder that the environment variable PZ_CORPUS names (NAME.tsv with
 * NAME.truth.tsv, growing series left out), cases() where it names none. A failure where the folder has none.
 */
std::vector<Case> corpusCases();
/** The number that an environment variable holds, fallback where it holds none. */
int countFrom(const char *variable, int fallback);

} // namespace shapes
