#include "xpath.h"

#include "vxcurvelocation.h"
#include "vxcurvepair_p.h"
#include "vxintersections_p.h"
#include "vxorderedboxes_p.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/** The curves of most drawings fit on the stack. */
using PreparedCurves = QVarLengthArray<vx::PreparedCurve, 64>;

PreparedCurves prepare(const QList<vxCurve *> &curves)
{
    PreparedCurves prepared(curves.size());
    for (int i = 0; i < curves.size(); ++i)
        prepared[i] = vx::PreparedCurve(curves.at(i)->_cubic());
    return prepared;
}

struct BoxOf {
    const vx::PreparedCurve *curves;
    const vx::Box &operator()(size_t i) const { return curves[i].box; }
};

/** Box of a compound path's vertices, which lies within its bounds; all NaN with a vertex far off or NaN. */
vx::Box verticesBox(const XPath &path)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double far = 1e6;
    vx::Box box{ infinite, infinite, -infinite, -infinite };
    for (const vxPath *child : path.children) {
        const QList<vxSegment *> segments = child->getSegments();
        for (const vxSegment *segment : segments) {
            const vxPoint &p = segment->point;
            if (!(std::fabs(p.x) <= far && std::fabs(p.y) <= far))
                return { qQNaN(), qQNaN(), qQNaN(), qQNaN() };
            box.minX = std::min(box.minX, p.x);
            box.minY = std::min(box.minY, p.y);
            box.maxX = std::max(box.maxX, p.x);
            box.maxY = std::max(box.maxY, p.y);
        }
    }
    return box;
}

bool boundsTouch(const XPath &a, const XPath &b)
{
    // Vertices mostly tell. Bounds are kept as corner and size, which moves their edges by less than 1e-9.
    constexpr double sure = vxTolerance::closeDistance;
    const vx::Box ofA = verticesBox(a);
    const vx::Box ofB = verticesBox(b);
    if (ofA.maxX - ofB.minX > sure && ofB.maxX - ofA.minX > sure && ofA.maxY - ofB.minY > sure &&
        ofB.maxY - ofA.minY > sure)
        return true;
    const vxBoundOpt option = vxBoundOpt::geometric();
    const vxStyle style;
    return a.getBounds(option, style).touches(b.getBounds(option, style));
}

/** A run of curves in a list that make up one contour. */
struct ContourRange {
    int first = 0;
    int count = 0;
    bool closed = false;

    int end() const { return first + count; }
    /** Places of the neighbours of the curve at place i; -1 where there is none. */
    int before(int i) const { return i > first ? i - 1 : closed ? end() - 1 : -1; }
    int after(int i) const { return i + 1 < end() ? i + 1 : closed ? first : -1; }
};

/** One search for all meetings of two compound paths, or of one with itself. */
class Search
{
public:
    Search(const QList<vxCurve *> &curves1, const QList<vxCurve *> &curves2, bool self,
           const std::function<bool(vxCurveLocation *)> &include)
        : m_curves1(curves1), m_curves2(curves2), m_values2(prepare(curves2)),
          m_boxes2(size_t(m_values2.size()), BoxOf{ m_values2.constData() }), m_self(self)
    {
        m_param.include = include;
        // The application's option: two shapes of six curves are not intersected.
        m_skipPairs = vxPath::m_isClloutOpt && curves1.size() == 6 && curves2.size() == 6;
    }

    void addDoubts(vx::SearchDoubts &doubts) const
    {
        doubts.limitReached = doubts.limitReached || m_param.limitReached;
        doubts.nearMiss = doubts.nearMiss || m_param.nearMiss;
    }

    QList<vxCurveLocation *> run(bool returnFirst)
    {
        for (int i = 0; i < m_curves1.size(); ++i) {
            if (i == m_contour.end()) {
                const vxPath &path = *m_curves1.at(i)->path();
                m_contour = { i, path._countCurves(), path.isClosed() };
                m_found += m_group;
                m_group.clear();
            }
            if (m_self)
                meetItself(i);
            const int first = m_self ? i + 1 : 0;
            if (first < m_curves2.size() && returnFirst) {
                vxCurveLocation::releaseAll(m_found);
                return m_group;
            }
            if (m_skipPairs)
                continue;
            if (m_self)
                meetOthers(i, m_values2[i], first);
            else
                meetOthers(i, vx::PreparedCurve(m_curves1.at(i)->_cubic()), first);
        }
        return m_found + m_group;
    }

private:
    void meetItself(int i)
    {
        vxCurve *curve = m_curves1.at(i);
        setParam(false, false);
        // A closed path of one curve meets itself where it closes, which is no intersection.
        m_param.excludeStart =
            m_curves1.size() == 1 && curve->getPoint1().subtract(curve->getPoint2()).isZero();
        vx::addSelfIntersection(m_values2[i], curve, m_group, m_param);
    }

    void meetOthers(int i, const vx::PreparedCurve &values1, int first)
    {
        vxCurve *curve1 = m_curves1.at(i);
        const int before = m_self ? m_contour.before(i) : -1;
        const int after = m_self ? m_contour.after(i) : -1;
        // Twice the reach of boxesMeet, which decides: the comparisons may round differently.
        m_boxes2.query(values1.box, 2 * vxTolerance::closeDistance, first, [&](int j) {
            const vx::PreparedCurve &values2 = m_values2[j];
            if (!vx::boxesMeet(values1.box, values2.box))
                return;
            setParam(j == before, j == after);
            vx::CurvePair(values1, values2, curve1, m_curves2.at(j), m_group, m_param).intersect();
        });
    }

    void setParam(bool excludeStart, bool excludeEnd)
    {
        m_param.excludeStart = excludeStart;
        m_param.excludeEnd = excludeEnd;
        m_param.renormalize = false;
        m_param.renormalizeTime = 0;
    }

    const QList<vxCurve *> &m_curves1;
    const QList<vxCurve *> &m_curves2;
    const PreparedCurves m_values2;
    vx::BoxLookup<BoxOf> m_boxes2;
    bool m_self;
    bool m_skipPairs;
    opParam m_param;
    ContourRange m_contour;
    QList<vxCurveLocation *> m_found;
    /** What the curves of the current contour have met; merging and sorting stay within it. */
    QList<vxCurveLocation *> m_group;
};

} // namespace

namespace {

QList<vxCurveLocation *> search(XPath &path, XPath *other,
                                const std::function<bool(vxCurveLocation *)> &include, bool returnFirst,
                                vx::SearchDoubts &doubts)
{
    const bool self = !other || other == &path;
    if (!self && !boundsTouch(path, *other))
        return QList<vxCurveLocation *>();
    const QList<vxCurve *> curves1 = path.getCurves();
    const QList<vxCurve *> curves2 = self ? curves1 : other->getCurves();
    Search search(curves1, curves2, self, include);
    const QList<vxCurveLocation *> found = search.run(returnFirst);
    search.addDoubts(doubts);
    return found;
}

} // namespace

QList<vxCurveLocation *> vx::findIntersections(XPath &path, XPath *other,
                                               const std::function<bool(vxCurveLocation *)> &include,
                                               SearchDoubts &doubts)
{
    return search(path, other, include, false, doubts);
}

QList<vxCurveLocation *>
XPath::getIntersections(XPath *other, const std::function<bool(vxCurveLocation *)> &include, bool returnFirst)
{
    vx::SearchDoubts doubts;
    return search(*this, other, include, returnFirst, doubts);
}

QList<vxCurveLocation *> XPath::getCrossings(XPath *other)
{
    return getIntersections(
        other, [](vxCurveLocation *location) { return location->overlap || location->isCrossing(); }, false);
}
