#include "vxcleancopy_p.h"

#include "vxcleanup_p.h"
#include "vxfilledregion_p.h"
#include "vxoutline_p.h"
#include "vxrepeated_p.h"
#include "vxresolve_p.h"
#include "vxrunnotes_p.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace vx {

namespace {

/**
 * Fraction of the bounding-box area; simplifying counts as moving the outline when the area changes by more.
 */
constexpr double simplifiedFraction = 1e-12;

bool haveSameCount(const XPath &a, const XPath &b)
{
    return a.children.size() == b.children.size() && countSegments(a) == countSegments(b);
}

/** Whether areas are numbers: sums of products of coordinates that neither overflow nor are NaN. */
bool hasFiniteArea(const XPath &path)
{
    constexpr double largest = 1e100;
    const auto isModerate = [](const vxPoint &p) {
        return std::fabs(p.x) <= largest && std::fabs(p.y) <= largest;
    };
    for (const vxPath *child : path.children) {
        for (const vxSegment *s : child->_segments()) {
            if (!isModerate(s->point) || !isModerate(s->handleIn) || !isModerate(s->handleOut))
                return false;
        }
    }
    return true;
}

/** Whether a reduced copy fills another area than its original. */
bool movedArea(const XPath &original, const XPath &copy, bool isSame)
{
    if (isSame && hasFiniteArea(copy))
        return false;
    const auto areaOf = [](const XPath &path) {
        double sum = 0;
        for (const vxPath *child : path.children)
            sum += std::fabs(child->getArea(false, true));
        return sum;
    };
    const vxRect box = original.getBounds(vxBoundOpt::geometric(), vxStyle());
    return !(std::fabs(areaOf(original) - areaOf(copy)) <= simplifiedFraction * box.getArea());
}

/**
 * In path units: a fold whose branches lie farther apart is a thin loop, on which samples can tell the sides.
 */
constexpr double foldWidth = 1e-6;

bool hasFold(const XPath &path)
{
    double times[2];
    for (const vxPath *child : path.children) {
        for (int i = 0; i < outlineSize(*child); ++i) {
            if (foldTimes(outlineCurve(*child, i), foldWidth, times) != 0)
                return true;
        }
    }
    return false;
}

bool isMisdirected(const XPath &path)
{
    return std::any_of(path.children.begin(), path.children.end(), [](const vxPath *child) {
        // Of a closed contour the one that is kept, which others ask for.
        const double area = child->isClosed() ? child->getArea(true, false) : child->getArea(false, true);
        return child->isClockwise() ? area < 0 : area > 0;
    });
}

} // namespace

XPath *cleanCopy(const XPath *path, RunNotes &notes)
{
    if (!path)
        return new XPath;
    std::shared_ptr<CleanUp> &known = path->_cleanUp();
    if (known && known->holdsFor(*path)) {
        notes.add(known->notes());
        return known->repeat(*path);
    }
    XPath *copy = workingCopy(*path);
    const QVector<vxPath *> first = copy->children;
    copy->reduce(true);
    RunNotes own;
    // Reducing changes nothing but where it drops a segment.
    const bool isReduced = haveSameCount(*path, *copy);
    own.simplified = movedArea(*path, *copy, isReduced);
    own.folded = hasFold(*copy);
    dropRepeated(*copy);
    const bool isResolved = resolveCrossings(*copy, own);
    own.misdirected = isMisdirected(*copy);
    if (!isResolved) {
        known = std::make_shared<CleanUp>(*path, isReduced, own, keptContours(first, *copy));
    } else if (!CleanUp::isTooLarge(*path) && !CleanUp::isTooLarge(*copy)) {
        known = std::make_shared<CleanUp>(*path, own, std::unique_ptr<XPath>(copyOfClean(*copy)));
    } else {
        known = nullptr;
    }
    notes.add(own);
    return copy;
}

StandingCurves *standingCurves(const XPath &path, bool isReversed)
{
    const std::shared_ptr<CleanUp> &known = path._cleanUp();
    return known ? known->curves(isReversed) : nullptr;
}

bool isCleaningConfirmed(const XPath &operand)
{
    const std::shared_ptr<CleanUp> &known = operand._cleanUp();
    return known && known->isConfirmed(operand);
}

std::shared_ptr<const FilledRegion> filledRegion(const XPath &operand)
{
    const std::shared_ptr<CleanUp> &known = operand._cleanUp();
    return known ? known->region(operand) : std::make_shared<FilledRegion>(operand);
}

} // namespace vx

XPath *XPath::preparePath(const XPath *path, bool resolve)
{
    if (path)
        path->_noticeEdits();
    XPath *copy = path ? vx::workingCopy(*path) : new XPath;
    copy->reduce(true);
    if (resolve)
        copy->resolveCrossings();
    return copy;
}
