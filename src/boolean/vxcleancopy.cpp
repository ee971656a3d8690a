#include "vxcleancopy_p.h"

#include "vxcleanup_p.h"
#include "vxfilledregion_p.h"
#include "vxmonopieces_p.h"
#include "vxref_p.h"
#include "vxrunnotes_p.h"
#include "vxtolerance.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace vx {

namespace {

int countSegments(const XPath &path)
{
    int count = 0;
    for (const vxPath *child : path.children)
        count += child->_segments().size();
    return count;
}

/**
 * Square path units, as part of the area around: leaving out vertices moved the outline if the area moved by
 * more.
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

/** For one who takes a child out of its list: it is nobody's then, with count 0. */
void letGoOf(vxPath *child)
{
    vxRef<vxPath> held(child);
    child->parent = nullptr;
    child->release();
    held.take();
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

bool isLeftover(const vxPath &contour)
{
    constexpr int mostSegments = 8;
    return contour._segments().size() <= mostSegments &&
           std::fabs(contour.getArea(true, false)) <= vxTolerance::machineZero;
}

QVector<vxPath *> takeChildren(XPath &copy)
{
    QVector<vxPath *> children;
    children.swap(copy.children);
    for (vxPath *child : qAsConst(children))
        letGoOf(child);
    return children;
}

void letGoOfTaken(XPath &copy)
{
    const auto stays = [](const vxPath *child) { return !child->isFlags(taken); };
    const auto first = std::stable_partition(copy.children.begin(), copy.children.end(), stays);
    for (auto child = first; child != copy.children.end(); ++child) {
        letGoOf(*child);
        (*child)->_clearScratch();
    }
    copy.children.erase(first, copy.children.end());
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
