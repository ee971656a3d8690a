#include "xpath.h"

#include "vxcurvelocation.h"
#include "vxcurvepair_p.h"
#include "vxintersections_p.h"
#include "vxorderedboxes_p.h"

#include <vector>

namespace {

std::vector<vx::PreparedCurve> prepare(const QList<vxCurve *> &curves)
{
    std::vector<vx::PreparedCurve> prepared;
    prepared.reserve(size_t(curves.size()));
    for (const vxCurve *curve : curves)
        prepared.emplace_back(curve->_cubic());
    return prepared;
}

std::vector<vx::Box> boxesOf(const std::vector<vx::PreparedCurve> &curves)
{
    std::vector<vx::Box> boxes;
    boxes.reserve(curves.size());
    for (const vx::PreparedCurve &curve : curves)
        boxes.push_back(curve.box);
    return boxes;
}

bool boundsTouch(const XPath &a, const XPath &b)
{
    const vxBoundOpt option = vxBoundOpt::geometric();
    const vxStyle style;
    return a.getBounds(option, style).touches(b.getBounds(option, style));
}

/** One search for all meetings of two compound paths, or of one with itself. */
class Search
{
public:
    Search(const QList<vxCurve *> &curves1, const QList<vxCurve *> &curves2, bool self,
           const std::function<bool(vxCurveLocation *)> &include)
        : m_curves1(curves1), m_curves2(curves2), m_values2(prepare(curves2)), m_boxes2(boxesOf(m_values2)),
          m_self(self)
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
        const vxPath *path = nullptr;
        for (int i = 0; i < m_curves1.size(); ++i) {
            if (i == 0 || m_curves1.at(i)->path() != path) {
                m_found += m_group;
                m_group.clear();
                path = m_curves1.at(i)->path();
            }
            if (m_self)
                meetItself(i);
            const int first = m_self ? i + 1 : 0;
            if (first < m_curves2.size() && returnFirst) {
                vxCurveLocation::releaseAll(m_found);
                return m_group;
            }
            if (!m_skipPairs)
                meetOthers(i, first);
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
        vx::addSelfIntersection(m_values2[size_t(i)], curve, m_group, m_param);
    }

    void meetOthers(int i, int first)
    {
        vxCurve *curve1 = m_curves1.at(i);
        const vx::PreparedCurve values1 = m_self ? m_values2[size_t(i)] : vx::PreparedCurve(curve1->_cubic());
        vxCurve *previous = m_self ? curve1->getPrevious() : nullptr;
        vxCurve *following = m_self ? curve1->getNext() : nullptr;
        // Twice the reach of boxesMeet, which decides: the comparisons may round differently.
        m_boxes2.query(values1.box, 2 * vxTolerance::closeDistance, first, [&](int j) {
            const vx::PreparedCurve &values2 = m_values2[size_t(j)];
            if (!vx::boxesMeet(values1.box, values2.box))
                return;
            vxCurve *curve2 = m_curves2.at(j);
            setParam(m_self && curve2 == previous, m_self && curve2 == following);
            vx::CurvePair(values1, values2, curve1, curve2, m_group, m_param).intersect();
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
    std::vector<vx::PreparedCurve> m_values2;
    vx::OrderedBoxes m_boxes2;
    bool m_self;
    bool m_skipPairs;
    opParam m_param;
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
