#include "pzpath.h"
#include "pzpath_p.h"
#include "xpath.h"

#include <algorithm>

namespace {

using Elements = QVector<PZPath::PZElement>;

/**
 * Reverses the elements s to e of one subpath. Types and points after the start run backwards, then all
 * points move one place to the front: M P0, C C1 C2 P1 becomes M P1 and (3, 3, 2) C2 C1 P0, whose codes the
 * caller repairs. The head fields stay where they are: they belong to the ends of the subpath, not to its
 * points.
 */
void reverseSubpath(Elements &elements, int s, int e)
{
    for (int a = s + 1, b = e; a < b; ++a, --b) {
        std::swap(elements[a].x, elements[b].x);
        std::swap(elements[a].y, elements[b].y);
        std::swap(elements[a].type, elements[b].type);
    }
    const PZPath::PZElement start = elements.at(s);
    for (int i = s; i < e; ++i)
        pz::setPoint(elements[i], pz::pointOf(elements.at(i + 1)));
    pz::setPoint(elements[e], pz::pointOf(start));
}

/** Every reversed cubic reads (3, 3, 2). */
void repairCurveCodes(Elements &elements)
{
    for (int i = 0; i < elements.count() - 2; ++i) {
        if (elements.at(i).type != PZPath::CurveToDataElement)
            continue;
        elements[i].type = PZPath::CurveToElement;
        elements[i + 1].type = PZPath::CurveToDataElement;
        elements[i + 2].type = PZPath::CurveToDataElement;
        i += 2;
    }
}

bool isBoundary(const PZPath::PZElement &element)
{
    return element.type == PZPath::MoveToElement || element.type == PZPath::CloseElement;
}

bool areMoves(const PZPath::PZElement &a, const PZPath::PZElement &b)
{
    return a.type == PZPath::MoveToElement && b.type == PZPath::MoveToElement;
}

} // namespace

void PZPath::roundData()
{
    for (PZElement &element : m_elements) {
        // A close element repeats its subpath's start, which stays what the subpath was drawn from.
        if (element.type == CloseElement)
            continue;
        const QPointF p = pz::roundedPoint(element);
        pz::setPoint(element, vxPoint(p.x(), p.y()));
    }
}

void PZPath::cleanUp()
{
    if (m_elements.isEmpty())
        return;
    if (m_elements.at(0).type != MoveToElement)
        m_elements.first().type = MoveToElement;
    // A clean path is only read, so that it stays shared with its copies.
    if (std::adjacent_find(m_elements.constBegin(), m_elements.constEnd(), areMoves) == m_elements.constEnd())
        return;
    iterator kept = m_elements.begin();
    for (iterator next = kept + 1; next != m_elements.end(); ++next) {
        if (!areMoves(*kept, *next))
            ++kept;
        *kept = *next;
    }
    m_elements.erase(kept + 1, m_elements.end());
}

void PZPath::reverse()
{
    const int n = m_elements.count();
    if (n < 2)
        return;
    for (int s = 0; s < n;) {
        int boundary = s + 1;
        while (boundary < n && !isBoundary(m_elements.at(boundary)))
            ++boundary;
        reverseSubpath(m_elements, s, boundary - 1);
        const bool isClosed = boundary < n && m_elements.at(boundary).type == CloseElement;
        s = isClosed ? boundary + 1 : boundary;
    }
    repairCurveCodes(m_elements);
}

bool PZPath::isClockWise() const
{
    const auto contours = pz::buildContours(*this, 0, nullptr, 1);
    return contours.empty() || contours.front()->isClockwise();
}

bool PZPath::isEvenOdd() const
{
    const vxPath *reference = nullptr;
    const auto contours = pz::buildContours(*this, 0, nullptr);
    for (const vxRef<vxPath> &contour : contours) {
        if (!contour->isClosed())
            continue;
        if (!reference)
            reference = contour.get();
        else if (contour->isClockwise() != reference->isClockwise())
            return true;
    }
    return false;
}

int PZPath::getOpenedStart(QPointF &first, QPointF &second, int &index) const
{
    const int n = m_elements.count();
    int candidate = -1;
    int i = std::max(index, 0);
    for (; i < n; ++i) {
        const int type = m_elements.at(i).type;
        if (type == CloseElement) {
            candidate = -1;
        } else if (type == MoveToElement) {
            if (candidate >= 0)
                break;
            candidate = i;
            first = m_elements.at(i).toPoint();
        }
    }
    if (candidate < 0 || candidate >= n - 1)
        return -1;
    second = m_elements.at(candidate + 1).toPoint();
    index = i;
    return candidate;
}

int PZPath::getOpenedEnd(QPointF &beforeEnd, QPointF &end, int &index, int &startIndex) const
{
    const int n = m_elements.count();
    startIndex = -1;
    int i = std::max(index, 0);
    if (i >= n)
        return -1;
    for (; i < n; ++i) {
        const int type = m_elements.at(i).type;
        if (type == CloseElement) {
            startIndex = -1;
        } else if (type == MoveToElement) {
            if (startIndex >= 0)
                break;
            startIndex = i;
        }
    }
    if (startIndex < 0 || n < 2)
        return -1;
    if (i >= 2) {
        beforeEnd = m_elements.at(i - 2).toPoint();
        end = m_elements.at(i - 1).toPoint();
    }
    index = i;
    return i - 1;
}

double PZPath::getTangent(int index, bool atStart)
{
    XPath xpath;
    toXPath(xpath, index);
    const vxPath *child = xpath.getFirstChild();
    if (!child)
        return 0.0;
    const vxPoint tangent = child->getTangentAt(atStart ? 0 : child->getLength());
    return tangent.isNaN() ? 0.0 : tangent.getAngle();
}
