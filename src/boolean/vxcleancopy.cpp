#include "vxcleancopy_p.h"

#include "vxaudit_p.h"
#include "vxfilledregion_p.h"
#include "vxmonopieces_p.h"
#include "vxref_p.h"
#include "vxrunnotes_p.h"
#include "vxstandingcurves_p.h"
#include "xpath.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

namespace vx {

namespace {

/** Which way round a contour was declared to run; none: its area tells. */
std::optional<bool> directionOf(const vxPath &path)
{
    if (!path.isFlags(vxPath::madeClockwise | vxPath::madeCounterClockwise))
        return std::nullopt;
    return path.isFlags(vxPath::madeClockwise);
}

/** A contour of an operand that is as it was when it is clean, but for vertices and direction. */
struct KeptContour {
    int place; ///< among the operand's contours
    std::optional<bool> clockwise;
};

/** All that cleaning asks of a contour: a version stands for its geometry. */
struct ContourState {
    explicit ContourState(const vxPath &path)
        : id(path.id), version(path.version), flags(path.flags), closed(path.isClosed())
    {
    }
    bool operator==(const ContourState &other) const
    {
        return id == other.id && version == other.version && flags == other.flags && closed == other.closed;
    }

    quint32 id;
    quint32 version;
    decltype(vxPath::flags) flags;
    bool closed;
};

int countSegments(const XPath &path)
{
    int count = 0;
    for (const vxPath *child : path.children)
        count += child->_segments().size();
    return count;
}

/** A copy of some of a compound path's contours, in another order maybe; change is done to each. */
template <typename Change>
XPath *workingCopy(const XPath &path, const QVector<vxPath *> &contours, Change &&change)
{
    auto *copy = new XPath;
    copy->evenOdd = path.evenOdd;
    copy->_addCopiesOf(contours, [&change](int i, vxPath &contour) {
        contour.removeFlags(overlapsOnly | validOverlapsOnly);
        change(i, contour);
    });
    return copy;
}

XPath *workingCopy(const XPath &path)
{
    return workingCopy(path, path.children, [](int, vxPath &) {});
}

/** A working copy of what nobody changes, so that areas are computed once for all copies. */
XPath *copyWithAreas(const XPath &kept)
{
    return workingCopy(kept, kept.children, [&kept](int i, vxPath &contour) {
        contour.area = kept.children.at(i)->getArea(true, false);
    });
}

} // namespace

/**
 * What cleaning came to: where an operand has no crossings of its own, what was done to its contours;
 * otherwise, and where it is asked for again and again, a cleaned copy.
 */
class CleanUp
{
public:
    CleanUp(const XPath &original, bool isReduced, const RunNotes &notes, std::vector<KeptContour> kept)
        : CleanUp(original, notes)
    {
        m_isReduced = isReduced;
        m_kept = std::move(kept);
    }
    CleanUp(const XPath &original, const RunNotes &notes, std::unique_ptr<XPath> resolved)
        : CleanUp(original, notes)
    {
        m_copy = std::move(resolved);
    }

    /** Larger operands keep neither copy nor curves, which would be more than half a megabyte each. */
    static constexpr int mostCurves = 4096;
    /** Whether nothing has changed since. */
    bool holdsFor(const XPath &original) const
    {
        return m_evenOdd == original.evenOdd && m_skipsSixes == vxPath::m_isClloutOpt &&
               m_states.size() == size_t(original.children.size()) &&
               std::equal(m_states.begin(), m_states.end(), original.children.begin(),
                          [](const ContourState &state, const vxPath *child) {
                              return state == ContourState(*child);
                          });
    }
    const RunNotes &notes() const { return m_notes; }
    /** Whether what cleaning met is no reason to doubt it. */
    bool isConfirmed(const XPath &original)
    {
        if (!m_isConfirmed)
            m_isConfirmed =
                canBeConfirmed() && confirmsCleaning(original, *std::unique_ptr<XPath>(repeat(original)));
        return *m_isConfirmed;
    }
    /** Another cleaned copy; the caller's. */
    XPath *repeat(const XPath &original)
    {
        if (m_keepsCurves && !m_copy)
            m_copy.reset(redo(original));
        return m_copy ? copyWithAreas(*m_copy) : redo(original);
    }
    /** Called for every copy but the first. */
    void noteRepeat(const XPath &original) { m_keepsCurves = countSegments(original) <= mostCurves; }
    /** Of the copies as they are cleaned, or of their reverse; null before the second copy. */
    StandingCurves *curves(bool isReversed)
    {
        return m_keepsCurves ? &m_curves[isReversed ? 1 : 0] : nullptr;
    }
    /** Of the original, which has not changed since. */
    std::shared_ptr<const FilledRegion> region(const XPath &original)
    {
        if (!m_keepsCurves)
            return std::make_shared<FilledRegion>(original);
        if (!m_region)
            m_region = std::make_shared<FilledRegion>(original);
        return m_region;
    }

private:
    /** What was done to the original, done to a copy of it. */
    XPath *redo(const XPath &original) const
    {
        QVector<vxPath *> contours;
        contours.reserve(int(m_kept.size()));
        for (const KeptContour &kept : m_kept)
            contours.append(original.children.at(kept.place));
        return workingCopy(original, contours, [this](int i, vxPath &contour) {
            if (!m_isReduced)
                contour.reduce(true);
            if (const std::optional<bool> clockwise = m_kept[size_t(i)].clockwise)
                contour.setClockwise(*clockwise);
        });
    }

    /** Borders that contours of the operand share, and contacts that no vertices show, stay doubtful. */
    bool canBeConfirmed() const
    {
        return !m_notes.overlap && !m_notes.touchWithin && !m_notes.shallow && !m_notes.folded &&
               !m_notes.misdirected;
    }

    CleanUp(const XPath &original, const RunNotes &notes)
        : m_evenOdd(original.evenOdd), m_notes(notes), m_skipsSixes(vxPath::m_isClloutOpt)
    {
        m_states.reserve(size_t(original.children.size()));
        for (const vxPath *child : original.children)
            m_states.emplace_back(*child);
    }

    bool m_evenOdd;
    /** The original is as reducing leaves it. */
    bool m_isReduced = false;
    RunNotes m_notes;
    /** The application's switch, on which the search for crossings depended. */
    bool m_skipsSixes;
    std::vector<KeptContour> m_kept;
    /** Null where the kept contours tell all, and nobody asked twice or for many curves. */
    std::unique_ptr<XPath> m_copy;
    std::vector<ContourState> m_states;
    bool m_keepsCurves = false;
    std::optional<bool> m_isConfirmed; ///< none: not asked for
    /** A length may change in its last bit when a curve is reversed. */
    std::array<StandingCurves, 2> m_curves;
    std::shared_ptr<const FilledRegion> m_region;
};

namespace {

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
        const double area = child->getArea(false, true);
        return child->isClockwise() ? area < 0 : area > 0;
    });
}

} // namespace

namespace {

/** What became of the contours of a first working copy, of which some may be no more. */
std::vector<KeptContour> keptOf(const QVector<vxPath *> &first, const XPath &clean)
{
    QVarLengthArray<std::pair<const vxPath *, int>, 16> places;
    places.reserve(first.size());
    for (int i = 0; i < first.size(); ++i)
        places.append({ first.at(i), i });
    std::sort(places.begin(), places.end());
    std::vector<KeptContour> kept;
    kept.reserve(size_t(clean.children.size()));
    for (const vxPath *child : clean.children) {
        const auto place = std::lower_bound(places.cbegin(), places.cend(), std::make_pair(child, 0));
        kept.push_back({ place->second, directionOf(*child) });
    }
    return kept;
}

} // namespace

XPath *cleanCopy(const XPath *path, RunNotes &notes)
{
    if (!path)
        return new XPath;
    std::shared_ptr<CleanUp> &known = path->_cleanUp();
    if (known && known->holdsFor(*path)) {
        notes.add(known->notes());
        known->noteRepeat(*path);
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
        known = std::make_shared<CleanUp>(*path, isReduced, own, keptOf(first, *copy));
    } else if (countSegments(*path) <= CleanUp::mostCurves && countSegments(*copy) <= CleanUp::mostCurves) {
        known = std::make_shared<CleanUp>(*path, own, std::unique_ptr<XPath>(workingCopy(*copy)));
    } else {
        known = nullptr;
    }
    notes.add(own);
    return copy;
}

QVector<vxPath *> takeChildren(XPath &copy)
{
    QVector<vxPath *> taken;
    taken.swap(copy.children);
    for (vxPath *child : qAsConst(taken)) {
        vxRef<vxPath> held(child);
        child->parent = nullptr;
        child->release();
        held.take();
    }
    return taken;
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
    XPath *copy = path ? vx::workingCopy(*path) : new XPath;
    copy->reduce(true);
    if (resolve)
        copy->resolveCrossings();
    return copy;
}
