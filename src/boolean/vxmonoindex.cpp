#include "vxmonoindex_p.h"

#include "vxmonopieces_p.h"
#include "vxmonospread_p.h"
#include "vxoutline_p.h"
#include "vxpath.h"
#include "vxstandingcurves_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <limits>

using namespace vxTolerance;

namespace vx {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
/** Path units: what counts as level may rise by this; outlines that come as near touch. */
constexpr double tiltedHeight = 1e-9;

} // namespace

MonoIndex::MonoIndex() = default;
MonoIndex::~MonoIndex() = default;

MonoIndex::MonoIndex(const vxPath &path)
{
    reserve(outlineSize(path));
    appendOutline(path, nullptr, nullptr);
}

MonoIndex::MonoIndex(const QList<vxMono *> &monos)
{
    reserve(monos.size());
    for (const vxMono *piece : monos) {
        if (piece->last || m_pieces.empty())
            beginOutline(size(), piece->last);
        appendPiece(*piece, nullptr);
    }
}

void MonoIndex::reserve(int curves)
{
    // Most curves are monotone or nearly: an eighth more is seldom exceeded.
    const size_t count = size_t(curves + curves / 8 + 3);
    m_pieces.reserve(count);
    m_reaches.reserve(count);
}

void MonoIndex::append(const vxPath &path, StandingCurves *standing)
{
    appendOutline(path, &path._curves(), standing);
}

inline void MonoIndex::appendPiece(const vxMono &piece, const Passage &passage, const Box &reach,
                                   const vxCurve *curve)
{
    m_pieces.emplace_back(piece, passage, curve);
    m_reaches.append(reach);
    if (!(reach.minY <= reach.maxY))
        m_curvesWithoutReach.push_back(curve);
    if (piece.winding == 0 && reach.maxY - reach.minY > tiltedHeight)
        m_hasTiltedLevel = true;
    m_largestCoordinate = std::max(m_largestCoordinate, largestOf(reach));
}

void MonoIndex::appendPiece(const vxMono &piece, const vxCurve *curve)
{
    const Box reach = reachOf(piece);
    appendPiece(piece, passageOf(piece, reach), reach, curve);
}

inline bool MonoIndex::appendKept(const StandingCurves &standing, const StandingCurve &known,
                                  const vxCurve *curve)
{
    const StandingPiece *pieces = standing.piecesOf(known);
    for (int i = 0; i < known.pieceCount; ++i)
        appendPiece(pieces[i].mono, pieces[i].passage, reachOf(pieces[i].mono), curve);
    return known.pieceCount > 0;
}

void MonoIndex::appendOutline(const vxPath &path, const QList<vxCurve *> *curves, StandingCurves *standing)
{
    const int first = size();
    const int count = outlineSize(path);
    const int curveCount = curves ? curves->size() : 0;
    for (int i = 0; i < count; ++i) {
        const vxCurve *curve = i < curveCount ? curves->at(i) : nullptr;
        StandingCurve *known = standing && curve ? standing->of(*curve) : nullptr;
        if (known && appendKept(*standing, *known, curve))
            continue;
        const Cubic c = outlineCurve(path, i);
        if (!isCounted(c)) {
            m_curvesWithoutReach.push_back(curve);
            continue;
        }
        const int firstPiece = size();
        appendCurve(c, curve);
        if (known)
            keepPieces(firstPiece, *standing, *known);
    }
    int last = size() - 1;
    while (last >= first && m_pieces[size_t(last)].mono.winding == 0)
        --last;
    if (last >= first || (first == 0 && size() > 0))
        beginOutline(first, last >= first ? &m_pieces[size_t(last)].mono : nullptr);
    m_spread.reset();
    m_strips.reset();
}

void MonoIndex::appendCurve(const Cubic &c, const vxCurve *curve)
{
    if (isOnePiece(c)) {
        appendPiece(pieceOf(c), curve);
        return;
    }
    vxMono pieces[3];
    const int count = monotonePieces(c, pieces);
    for (int i = 0; i < count; ++i)
        appendPiece(pieces[i], curve);
}

void MonoIndex::keepPieces(int first, StandingCurves &standing, StandingCurve &known) const
{
    for (int i = first; i < size(); ++i)
        standing.keep({ m_pieces[size_t(i)].mono, m_pieces[size_t(i)].passage }, known);
}

void MonoIndex::beginOutline(int first, const vxMono *last)
{
    if (last)
        m_outlines.push_back({ first, last->winding, last->values[6] });
    else
        m_outlines.push_back({ first, 0, std::numeric_limits<double>::quiet_NaN() });
}

int MonoIndex::endOf(size_t outline) const
{
    return outline + 1 < m_outlines.size() ? m_outlines[outline + 1].first : size();
}

/** Hands pieces to a count, ascending, and tells it where outlines begin. */
class MonoIndex::OutlineVisit
{
public:
    OutlineVisit(const MonoIndex &index, LevelCount &count) : m_index(index), m_count(count) {}

    void operator()(int i)
    {
        if (i >= m_end)
            enterOutlineOf(i);
        const Piece &piece = m_index.m_pieces[size_t(i)];
        m_count.visit(piece.mono, piece.passage, m_index.m_reaches[i]);
    }

private:
    void enterOutlineOf(int i)
    {
        const std::vector<Outline> &outlines = m_index.m_outlines;
        const auto next = std::upper_bound(outlines.begin(), outlines.end(), i,
                                           [](int piece, const Outline &o) { return piece < o.first; });
        (next - 1)->enter(m_count);
        m_end = next != outlines.end() ? next->first : m_index.size();
    }

    const MonoIndex &m_index;
    LevelCount &m_count;
    int m_end = 0; ///< of the outline at hand
};

MonoIndex::Spread *MonoIndex::spread() const
{
    if (!hasManyOutlines())
        return nullptr;
    if (!m_spread)
        m_spread = std::make_unique<Spread>(*this);
    return m_spread.get();
}

const IntervalStrips *MonoIndex::makeStrips() const
{
    // Building costs about as much as a question to the runs for each so many pieces; few are seldom asked
    // often.
    constexpr int piecesPerQuestion = 64;
    constexpr int fewQuestions = 4;
    if (m_questions < std::max(fewQuestions, size() / piecesPerQuestion)) {
        ++m_questions;
        return nullptr;
    }
    m_strips = std::make_unique<IntervalStrips>(size(), [this](int i) {
        return IntervalStrips::Interval{ m_reaches[i].minY, m_reaches[i].maxY };
    });
    return m_strips.get();
}

template <typename Visit>
void MonoIndex::visitLevels(double lo, double hi, Visit &&visit) const
{
    const auto meets = [lo, hi](const Box &box) { return box.minY <= hi && lo <= box.maxY; };
    const auto visitMeeting = [&](int i) {
        if (meets(m_reaches[i]))
            visit(i);
    };
    const IntervalStrips *strips = this->strips();
    if (!strips || !strips->visitAround(lo, hi, visitMeeting))
        m_reaches.query(0, size(), meets, visit);
}

template <typename Meets, typename Visit>
void MonoIndex::visitOutlines(const std::vector<int> &outlines, int first, int last, const Meets &meets,
                              Visit &&visit) const
{
    for (int outline : outlines) {
        const int from = m_outlines[size_t(outline)].first;
        m_reaches.query(std::max(from, first), std::min(endOf(size_t(outline)), last), meets, visit);
    }
}

template <typename Visit>
void MonoIndex::visitNearLevel(const vxPoint &point, double slack, Visit &&visit) const
{
    const double lo = point.y - slack;
    const double hi = point.y + slack;
    if (hasManyOutlines()) {
        const auto meets = [lo, hi](const Box &box) { return box.minY <= hi && lo <= box.maxY; };
        visitOutlines(spread()->outlinesThatCount(point, slack), 0, size(), meets, visit);
    } else {
        visitLevels(lo, hi, visit);
    }
}

void MonoIndex::findNear(const vxPoint &point, double slack, std::vector<int> &found) const
{
    found.clear();
    const Box box = widened({ point.x, point.y, point.x, point.y }, slack);
    const auto isNear = [&box](const Box &reach) { return !areApart(reach, box); };
    const auto take = [&found](int i) { found.push_back(i); };
    if (Spread *many = spread()) {
        visitOutlines(many->outlinesNear(point, slack), 0, size(), isNear, take);
        return;
    }
    visitLevels(box.minY, box.maxY, [&](int i) {
        if (isNear(m_reaches[i]))
            take(i);
    });
}

void MonoIndex::countClearly(const vxPoint &place, double slack, const vxCurve *own, int second,
                             ClearCount &count) const
{
    visitNearLevel(place, slack, [&](int i) {
        const Piece &piece = m_pieces[size_t(i)];
        count.visit(piece.mono, piece.passage, m_reaches[i], piece.curve == own, i >= second);
    });
}

void MonoIndex::findNeighbours(const vxCurve *own, int second, ClearNeighbours &neighbours) const
{
    const double lo = neighbours.box().minX;
    const double hi = neighbours.box().maxX;
    m_reaches.query(
        0, size(), [lo, hi](const Box &box) { return box.minX <= hi && lo <= box.maxX; },
        [&](int i) {
            const Piece &piece = m_pieces[size_t(i)];
            neighbours.visit(piece.mono, piece.curve == own, i >= second);
        });
}

bool MonoIndex::countAside(const Box &box, int first, int last, vxWinding &winding) const
{
    ClearCount count(box);
    visitLevels(box.minY, box.maxY, [&](int i) {
        const Piece &piece = m_pieces[size_t(i)];
        if (i >= first && i < last)
            count.visit(piece.mono, piece.passage, m_reaches[i], false, false);
    });
    winding = count.resultAside();
    return count.isClearOfAll();
}

bool MonoIndex::countAside(const vxPoint &place, vxWinding &winding) const
{
    const double slack = reachOfCurves();
    ClearCount count({ place.x - slack, place.y - slack, place.x + slack, place.y + slack });
    visitNearLevel(place, slack, [&](int i) {
        count.visit(m_pieces[size_t(i)].mono, m_pieces[size_t(i)].passage, m_reaches[i], false, false);
    });
    winding = count.resultAside();
    return count.isClearOfAll();
}

void MonoIndex::visitLevel(const vxPoint &point, int first, int last, LevelCount &count) const
{
    OutlineVisit visit(*this, count);
    visitNearLevel(point, 0, [&](int i) {
        if (i >= first && i < last)
            visit(i);
    });
}

double MonoIndex::usualReach() const
{
    // Farther out rounding moves curves by more than outlinesOnVertical() widens its search.
    constexpr double largest = 1e6;
    if (!(m_largestCoordinate <= largest) || !spread())
        return infinite;
    return std::max(2 * spread()->meanHeight(), m_largestCoordinate / 1024);
}

std::vector<MonoIndex::Height> MonoIndex::heightsOnVertical(const vxPoint &point, double top, double bottom,
                                                            int first, int last) const
{
    std::vector<Height> met;
    met.reserve(16);
    const double x = point.x;
    const auto meets = [x](const Box &box) { return box.minX <= x && x <= box.maxX; };
    const auto take = [&](int i) {
        const Height height = heightOf(i, point.y);
        // What runs along the level through the point, as its own piece does, is no neighbour.
        constexpr double beside = 2.5 * closeDistance; // bounds are wider by 2
        if (!(height.top > point.y - beside && height.bottom < point.y + beside))
            met.push_back(height);
    };
    if (Spread *many = spread())
        visitOutlines(many->outlinesOnVertical(x, top, bottom), first, last, meets, take);
    else
        m_reaches.query(first, last, meets, take);
    std::sort(met.begin(), met.end(), [](const Height &a, const Height &b) {
        return a.distance != b.distance ? a.distance < b.distance : a.piece < b.piece;
    });
    return met;
}

MonoIndex::Height MonoIndex::heightOf(int piece, double y) const
{
    constexpr double largest = 1e6; // up to here rounding moves curve points by far less than closeDistance
    const double *v = m_pieces[size_t(piece)].mono.values;
    const auto range = std::minmax({ v[1], v[3], v[5], v[7] });
    if (!(range.first >= -largest && range.second <= largest))
        return { piece, -infinite, infinite, 0 };
    const double top = range.first - 2 * closeDistance;
    const double bottom = range.second + 2 * closeDistance;
    return { piece, top, bottom, std::max(std::max(top - y, y - bottom), 0.0) };
}

} // namespace vx
