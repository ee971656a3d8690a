#include "vxcleanup_p.h"

#include "vxaudit_p.h"
#include "vxfilledregion_p.h"
#include "vxoutline_p.h"
#include "vxtracing_p.h"
#include "xpath.h"

#include <QVarLengthArray>

#include <algorithm>
#include <utility>

namespace vx {

namespace {

/** A copy of some of a compound path's contours, in another order maybe; change is done to each. */
template <typename Change>
XPath *workingCopy(const XPath &path, const QVector<vxPath *> &contours, const QVector<quint32> &ranks,
                   Change &&change)
{
    auto *copy = new XPath;
    copy->evenOdd = path.evenOdd;
    copy->_addCopiesOf(contours, ranks, [&change](int i, vxPath &contour) {
        contour.removeFlags(overlapsOnly | onlyOverlapsInResult | taken);
        change(i, contour);
    });
    return copy;
}

/** A copy whose locations are sorted like those of the original. */
template <typename Change>
XPath *copyOfClean(const XPath &clean, Change &&change)
{
    QVector<quint32> ids;
    ids.reserve(clean.children.size());
    for (const vxPath *child : clean.children)
        ids.append(child->id);
    return workingCopy(clean, clean.children, ids, change);
}

/** A working copy of what nobody changes, so that areas are computed once for all copies. */
XPath *copyWithAreas(const XPath &kept)
{
    return copyOfClean(
        kept, [&kept](int i, vxPath &contour) { contour.area = kept.children.at(i)->getArea(true, false); });
}

std::optional<bool> directionOf(const vxPath &path)
{
    if (!path.isFlags(vxPath::madeClockwise | vxPath::madeCounterClockwise))
        return std::nullopt;
    return path.isFlags(vxPath::madeClockwise);
}

} // namespace

XPath *workingCopy(const XPath &path)
{
    return workingCopy(path, path.children, {}, [](int, vxPath &) {});
}

XPath *copyOfClean(const XPath &clean)
{
    return copyOfClean(clean, [](int, vxPath &) {});
}

std::vector<KeptContour> keptContours(const QVector<vxPath *> &first, const XPath &clean)
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

CleanUp::CleanUp(const XPath &original, bool isReduced, const RunNotes &notes, std::vector<KeptContour> kept)
    : CleanUp(original, notes)
{
    m_isReduced = isReduced;
    m_kept = std::move(kept);
}

CleanUp::CleanUp(const XPath &original, const RunNotes &notes, std::unique_ptr<XPath> resolved)
    : CleanUp(original, notes)
{
    m_copy = std::move(resolved);
}

CleanUp::CleanUp(const XPath &original, const RunNotes &notes)
    : m_evenOdd(original.evenOdd), m_skipsSixes(vxPath::m_isClloutOpt), m_notes(notes)
{
    m_states.reserve(size_t(original.children.size()));
    for (const vxPath *child : original.children)
        m_states.emplace_back(*child);
}

CleanUp::~CleanUp() = default;

bool CleanUp::isTooLarge(const XPath &path)
{
    constexpr int most = 131072;
    return countSegments(path) > most;
}

// --- whether it holds ---

CleanUp::ContourState::ContourState(const vxPath &path)
    : id(path.id), version(path.version), flags(path.flags), closed(path.isClosed())
{
}

bool CleanUp::ContourState::operator==(const ContourState &other) const
{
    return id == other.id && version == other.version && flags == other.flags && closed == other.closed;
}

bool CleanUp::holdsFor(const XPath &original) const
{
    return m_evenOdd == original.evenOdd && m_skipsSixes == vxPath::m_isClloutOpt &&
           m_states.size() == size_t(original.children.size()) &&
           std::equal(
               m_states.begin(), m_states.end(), original.children.begin(),
               [](const ContourState &state, const vxPath *child) { return state == ContourState(*child); });
}

bool CleanUp::isConfirmed(const XPath &original)
{
    if (!m_isConfirmed)
        m_isConfirmed =
            canBeConfirmed() && confirmsCleaning(original, *std::unique_ptr<XPath>(cleaned(original)));
    return *m_isConfirmed;
}

/** Borders that contours of the operand share, and contacts that no vertices show, stay doubtful. */
bool CleanUp::canBeConfirmed() const
{
    return !m_notes.overlap && !m_notes.touchOffVertex && !m_notes.shallow && !m_notes.folded &&
           !m_notes.misdirected;
}

// --- what it saves ---

XPath *CleanUp::repeat(const XPath &original)
{
    m_stands = !isTooLarge(original);
    return cleaned(original);
}

XPath *CleanUp::cleaned(const XPath &original)
{
    if (m_stands && !m_copy) {
        m_copy.reset(redo(original));
        for (vxPath *contour : qAsConst(m_copy->children))
            contour->_noteReduced();
    }
    return m_copy ? copyWithAreas(*m_copy) : redo(original);
}

/** What was done to the original, done to a copy of it. */
XPath *CleanUp::redo(const XPath &original) const
{
    QVector<vxPath *> contours;
    QVector<quint32> places;
    contours.reserve(int(m_kept.size()));
    places.reserve(int(m_kept.size()));
    for (const KeptContour &kept : m_kept) {
        contours.append(original.children.at(kept.place));
        places.append(quint32(kept.place));
    }
    return workingCopy(original, contours, places, [this](int i, vxPath &contour) {
        if (!m_isReduced)
            contour.reduce(true);
        if (const std::optional<bool> clockwise = m_kept[size_t(i)].clockwise)
            contour.setClockwise(*clockwise);
    });
}

StandingCurves *CleanUp::curves(bool isReversed)
{
    return m_stands ? &m_curves[isReversed ? 1 : 0] : nullptr;
}

std::shared_ptr<const FilledRegion> CleanUp::region(const XPath &original)
{
    if (!m_stands)
        return std::make_shared<FilledRegion>(original);
    if (!m_region)
        m_region = std::make_shared<FilledRegion>(original);
    return m_region;
}

} // namespace vx
