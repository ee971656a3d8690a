#include "vxcurve.h"

#include "vxbatch_p.h"
#include "vxcurvelocation.h"
#include "vxcurvevalues_p.h"
#include "vxnowhere_p.h"
#include "vxpath.h"

#include <cmath>

using namespace vxTolerance;
using vx::nowhere;

vxCurve::vxCurve(const QVector<double> &values, vxPath *path) : m_path(path)
{
    vx::Cubic c;
    if (!vx::toCubic(values, c))
        return;
    m_segment1 = held(new vxSegment(c.p0(), vxPoint(), c.p1().subtract(c.p0())));
    m_segment2 = held(new vxSegment(c.p3(), c.p2().subtract(c.p3()), vxPoint()));
}

vxCurve *vxCurve::clone() const
{
    return new vxCurve(m_path, m_segment1, m_segment2);
}

void vxCurve::die()
{
    refCount = 0xFFFFFFFE;
    vxDestroy(this, m_inBlock);
}

// --- accessors ---

vxPoint vxCurve::getPoint1() const
{
    return m_segment1 ? m_segment1->point : nowhere;
}

vxPoint vxCurve::getPoint2() const
{
    return m_segment2 ? m_segment2->point : nowhere;
}

vxLine vxCurve::getLine() const
{
    return vxLine(getPoint1(), getPoint2(), false);
}

bool vxCurve::hasHandles() const
{
    return m_segment1 && m_segment2 && (!m_segment1->handleOut.isZero() || !m_segment2->handleIn.isZero());
}

void vxCurve::clearHandles()
{
    if (m_segment1)
        m_segment1->handleOut = vxPoint();
    if (m_segment2)
        m_segment2->handleIn = vxPoint();
    _changed();
    if (m_path)
        m_path->_changed();
}

vxCurve *vxCurve::getNext() const
{
    if (!m_path || index() < 0)
        return nullptr;
    const QList<vxCurve *> &curves = m_path->_curves();
    if (index() + 1 < curves.size())
        return curves.at(index() + 1);
    return m_path->isClosed() && !curves.isEmpty() ? curves.first() : nullptr;
}

vxCurve *vxCurve::getPrevious() const
{
    if (!m_path || index() < 0)
        return nullptr;
    const QList<vxCurve *> &curves = m_path->_curves();
    if (index() > 0)
        return curves.value(index() - 1, nullptr);
    return m_path->isClosed() && !curves.isEmpty() ? curves.last() : nullptr;
}

bool vxCurve::isFirst() const
{
    return m_path && index() == 0;
}

bool vxCurve::isLast() const
{
    return m_path && index() >= 0 && index() == m_path->_countCurves() - 1;
}

bool vxCurve::remove()
{
    if (!m_path || !m_segment1 || !m_segment2 || m_segment2->path != m_path)
        return false;
    m_segment1->handleOut = m_segment2->handleOut;
    // Last statement: at the end of an open path this curve leaves the list and may die here.
    return m_path->removeSegment(m_segment2->index);
}

QString vxCurve::toString() const
{
    if (!m_segment1 || !m_segment2)
        return QString();
    const vx::Cubic c = _cubic();
    return QStringLiteral("point1: %1, handle1: %2, handle2: %3, point2: %4")
        .arg(c.p0().toString(), m_segment1->handleOut.toString(), m_segment2->handleIn.toString(),
             c.p3().toString());
}

// --- geometry of this curve ---

vx::Cubic vxCurve::_cubic() const
{
    if (!m_segment1 || !m_segment2)
        return vx::Cubic{};
    return vx::cubicBetween(*m_segment1, *m_segment2);
}

double vxCurve::getLength() const
{
    // The path's version stands in for walking all its curves whenever it changes.
    const quint32 version = m_path ? m_path->version : 0;
    if (m_length == 0 || m_lengthVersion != version) {
        m_length = vx::length(_cubic());
        m_lengthVersion = version;
    }
    return m_length;
}

void vxCurve::_setLength(double length)
{
    m_length = length;
    m_lengthVersion = m_path ? m_path->version : 0;
}

vxRect vxCurve::getBounds() const
{
    const quint32 version = m_path ? m_path->version : 0;
    if (!m_bounds || m_bounds->version != version)
        m_bounds.reset(new KeptBounds{ getBounds(getValues()), version });
    return m_bounds->box;
}

double vxCurve::_startOffset() const
{
    double before = 0;
    if (m_path && index() > 0) {
        const QList<vxCurve *> &curves = m_path->_curves();
        for (int i = 0; i < index() && i < curves.size(); ++i)
            before += curves.at(i)->getLength();
    }
    return before;
}

double vxCurve::getOffsetAtTime(double t) const
{
    return _startOffset() + getPartLength(0, t);
}

vxCurveLocation *vxCurve::getLocationOf(const vxPoint &point)
{
    const double t = getTimeOf(point);
    if (t == noTime)
        return nullptr;
    return new vxCurveLocation(this, t, nowhere, false, 0);
}

vxCurve *vxCurve::getPart(double from, double to) const
{
    return new vxCurve(getPart(getValues(), from, to), nullptr);
}

bool vxCurve::isCollinear(const vxCurve *curve) const
{
    return curve && isStraight() && curve->isStraight() && getLine().isCollinear(curve->getLine());
}

bool vxCurve::isHorizontal() const
{
    return isStraight() && std::fabs(getTangentAtTime(0.5).y) < angleMargin;
}

bool vxCurve::isVertical() const
{
    return isStraight() && std::fabs(getTangentAtTime(0.5).x) < angleMargin;
}

// --- edits ---

vxSegment *vxCurve::_makeMiddle(double t, bool setHandles, vxBatch<vxSegment> *batch)
{
    // Written so that NaN is refused too.
    if (!(t >= timeMargin && t <= timeUpper) || !m_segment1 || !m_segment2)
        return nullptr;
    // A curve that names a path it is not part of has no place to insert at.
    if (m_path && m_segment1->path != m_path)
        return nullptr;

    vx::Cubic left, right;
    vx::subdivide(_cubic(), t, left, right);
    vxSegment *middle = vxMake(batch, left.p3(), vxPoint(), vxPoint());
    if (setHandles || hasHandles()) {
        m_segment1->handleOut = left.p1().subtract(left.p0());
        m_segment2->handleIn = right.p2().subtract(right.p3());
        middle->handleIn = left.p2().subtract(left.p3());
        middle->handleOut = right.p1().subtract(right.p0());
    }
    return middle;
}

vxCurve *vxCurve::divideAtTime(double t, bool setHandles)
{
    vxSegment *middle = _makeMiddle(t, setHandles);
    if (!middle)
        return nullptr;
    if (m_path) {
        const int behind = index() + 1;
        m_path->insertSegment(behind, middle);
        return m_path->getCurves().value(behind, nullptr);
    }
    auto *second = new vxCurve(nullptr, middle, m_segment2);
    if (!m_heldSegment2)
        m_heldSegment2 = m_segment2;
    m_segment2 = middle;
    _changed();
    return second;
}

vxPath *vxCurve::splitAt(vxCurveLocation *location)
{
    return m_path && location ? m_path->splitAt(location) : nullptr;
}

void vxCurve::_changed()
{
    m_length = 0;
    m_number = -1;
    m_bounds.reset();
}

void vxCurve::_setSegment2(vxSegment *segment)
{
    held(segment);
    letGo(m_heldSegment2 ? m_heldSegment2 : m_segment2);
    m_segment2 = segment;
    m_heldSegment2 = nullptr;
    _changed();
}
