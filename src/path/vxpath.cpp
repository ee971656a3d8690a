#include "vxpath.h"

#include "vxbatch_p.h"
#include "vxcurvevalues_p.h"
#include "vxfingerprint_p.h"
#include "vxlengthen_p.h"
#include "vxmonoindex_p.h"
#include "xpath.h"

std::atomic<quint32> vxPath::s_maxID{ 0 };
bool vxPath::m_isClloutOpt = false;

vxPath::vxPath(XPath *parent, bool closed) : closed(closed), id(++s_maxID), parent(parent) {}

vxPath::~vxPath()
{
    parent = nullptr;
    if (!m_monos.isEmpty() || m_monoIndex)
        clearMonos();
    releaseCurves();
    for (vxSegment *segment : qAsConst(m_segments)) {
        segment->_detach();
        segment->release();
    }
}

vxPath *vxPath::clone() const
{
    auto *copy = new vxPath(nullptr, closed);
    copy->assign(*this);
    return copy;
}

void vxPath::_copyFrom(const vxPath &other, vxBatch<vxSegment> &batch)
{
    closed = other.closed;
    flags = other.flags;
    m_segments.reserve(vx::roomyFor(other.m_segments.size()));
    appendCopiesOf(other.m_segments, batch);
    m_fingerprint = other.m_fingerprint;
    m_bounds = other.m_bounds;
    m_boundsValid = other.m_boundsValid;
    m_isReduced = other.m_isReduced;
}

void vxPath::_clearScratch()
{
    flags = 0;
    releaseCurves();
    clearMonos();
    for (vxSegment *segment : qAsConst(m_segments))
        segment->_clearScratch();
}

void vxPath::assign(const vxPath &other)
{
    if (&other == this)
        return;
    closed = other.closed;
    flags = other.flags;
    setSegments({});
    vxBatch<vxSegment> batch(size_t(other.m_segments.size()));
    appendCopiesOf(other.m_segments, batch);
}

void vxPath::release()
{
    if (refCount < 2) {
        refCount = 0xFFFFFFFE;
        delete this;
    } else {
        --refCount;
    }
}

// --- queries ---

void vxPath::makeCurves() const
{
    vxBatch<vxCurve> batch{ size_t(_countCurves()) };
    _makeCurves(batch);
}

void vxPath::_makeCurves(vxBatch<vxCurve> &batch) const
{
    const int count = _countCurves();
    if (!m_curves.isEmpty() || count == 0)
        return;
    // The curves are a cache; what they point back to may be edited by whoever may edit it anyway.
    auto *self = const_cast<vxPath *>(this);
    m_curves.reserve(vx::roomyFor(count));
    vxCurve **curves = vx::lengthen(m_curves, count);
    for (int i = 0; i < count; ++i) {
        vxSegment *next = m_segments.at(i + 1 < m_segments.size() ? i + 1 : 0);
        curves[i] = batch.make(self, m_segments.at(i), next);
        curves[i]->addRef();
    }
}

vxCurve *vxPath::getFirstCurve() const
{
    return getCurves().value(0, nullptr);
}

vxCurve *vxPath::getLastCurve() const
{
    return getCurves().value(_countCurves() - 1, nullptr);
}

bool vxPath::hasHandles() const
{
    for (const vxSegment *segment : m_segments) {
        if (segment->hasHandles())
            return true;
    }
    return false;
}

bool vxPath::equals(const vxPath &other) const
{
    return closed == other.closed && vxSegment::segsEquals(m_segments, other.m_segments);
}

QString vxPath::toString() const
{
    QString text = QStringLiteral("closed: %1, segments: %2").arg(closed ? 1 : 0).arg(m_segments.size());
    for (const vxSegment *segment : m_segments)
        text += QStringLiteral("\n%1").arg(segment->toString());
    return text;
}

// --- caches ---

void vxPath::_changed()
{
    ++version;
    length = 0;
    area = 0;
    m_fingerprint = 0;
    m_boundsValid = false;
    m_isReduced = false;
    // Curves stamp what they cached with the version, so that nobody has to walk them here.
    if (!m_monos.isEmpty() || m_monoIndex)
        clearMonos();
}

void vxPath::_noticeEdits() const
{
    const quint64 fingerprint = vx::Fingerprint::of(m_segments, closed);
    if (m_fingerprint != 0 && m_fingerprint != fingerprint) {
        // What is dropped are caches; the edit itself has happened.
        auto *self = const_cast<vxPath *>(this);
        if (m_curves.size() != _countCurves()) // closed was written
            self->releaseCurves();
        self->_changed();
    }
    m_fingerprint = fingerprint;
}

void vxPath::releaseCurves()
{
    // Taken out first: nothing that a release sets off may meet a half-released list.
    QList<vxCurve *> curves;
    curves.swap(m_curves);
    for (vxCurve *curve : qAsConst(curves)) {
        curve->_detach();
        curve->release();
    }
}

void vxPath::renumber(int from)
{
    for (int i = from; i < m_segments.size(); ++i)
        m_segments.at(i)->index = i;
}
