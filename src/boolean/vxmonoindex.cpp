#include "vxmonoindex_p.h"

#include "vxmonopieces_p.h"
#include "vxpath.h"
#include "vxstandingcurves_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

using namespace vxTolerance;

namespace vx {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
/** Path units: what counts as level may rise by this; outlines that come as near touch. */
constexpr double tiltedHeight = 1e-9;

} // namespace

/**
 * Where many outlines lie: those that a point has on one side need not be looked at, when their windings on
 * its level sum up to 0. They do where the level surely passes all their pieces that reach it, since an
 * outline comes back as often as it goes; elsewhere, as at vertices, they are counted once for all points of
 * the level.
 */
class MonoIndex::Spread
{
public:
    explicit Spread(const MonoIndex &index)
        : m_index(index), m_boxes(boxesOf(index)), m_meanHeight(meanHeightOf(m_boxes))
    {
        std::vector<IntervalIndex::Interval> unsure;
        for (size_t i = 0; i < index.m_outlines.size(); ++i) {
            addUnsureLevels(i, unsure);
            m_unsureOutlines.resize(unsure.size(), int(i));
        }
        m_unsure = IntervalIndex(unsure);
    }

    /**
     * Indexes of the outlines whose crossings with the level of a point have to be looked at, or that come
     * within slack of the point, ascending.
     */
    const std::vector<int> &outlinesThatCount(const vxPoint &point, double slack)
    {
        m_found.clear();
        const auto take = [this](int outline) { m_found.push_back(outline); };
        m_boxes.query({ point.x, point.y, point.x, point.y }, std::max(slack, 2 * closeDistance), 0, take);
        const std::vector<int> &uneven = unevenAt(point.y);
        m_found.insert(m_found.end(), uneven.begin(), uneven.end());
        std::sort(m_found.begin(), m_found.end());
        m_found.erase(std::unique(m_found.begin(), m_found.end()), m_found.end());
        return m_found;
    }

    /** Indexes of the outlines that the vertical at x may meet from top to bottom, ascending. */
    const std::vector<int> &outlinesOnVertical(double x, double top, double bottom)
    {
        // A curve leaves the reach of its pieces by closeDistance where it counts as straight, and by a
        // millionth of a millionth of its size where an extremum counts as its end.
        const double slack = 4 * closeDistance + 1e-11 * m_index.m_largestCoordinate;
        m_found.clear();
        m_boxes.query({ x, top, x, bottom }, slack, 0, [this](int i) { m_found.push_back(i); });
        return m_found;
    }

    /** Of the outlines. */
    double meanHeight() const { return m_meanHeight; }

private:
    /** The outlines of one level that do not come back as often as they go, seen from one side. */
    struct Level {
        double y = std::numeric_limits<double>::quiet_NaN();
        std::vector<int> uneven;
    };

    /** Remembers some levels: of shapes in a row many samples share one. */
    const std::vector<int> &unevenAt(double y)
    {
        std::uint64_t bits;
        std::memcpy(&bits, &y, sizeof bits);
        Level &level = m_levels[size_t(bits * 0x9e3779b97f4a7c15u >> 56)];
        if (level.y == y)
            return level.uneven;
        level.y = y;
        level.uneven.clear();
        m_unsure.query(y, [&](int i) {
            const int outline = m_unsureOutlines[size_t(i)];
            if (!isEven(outline, y))
                level.uneven.push_back(outline);
        });
        return level.uneven;
    }

    /**
     * Whether the windings of an outline on a level sum up to 0 for points that have it on one side. Which
     * point that is does not matter: it is only compared with places that all lie on that side of it.
     */
    bool isEven(int outline, double y) const
    {
        // Farther out rounding may move a crossing to another side.
        constexpr double largest = 1e6;
        if (!(m_index.m_largestCoordinate <= largest))
            return false;
        LevelCount count(vxPoint(-infinite, y));
        const Outline &o = m_index.m_outlines[size_t(outline)];
        o.enter(count);
        m_index.m_reaches.query(
            o.first, m_index.endOf(size_t(outline)),
            [y](const Box &box) { return box.minY <= y && y <= box.maxY; },
            [&](int i) {
                const Piece &piece = m_index.m_pieces[size_t(i)];
                count.visit(piece.mono, piece.passage, m_index.m_reaches[i]);
            });
        return count.result().winding == 0;
    }

    /** Boxes around outlines, beyond which a probe has each of their pieces clearly on one side. */
    static std::vector<Box> boxesOf(const MonoIndex &index)
    {
        std::vector<Box> boxes;
        boxes.reserve(index.m_outlines.size());
        for (size_t i = 0; i < index.m_outlines.size(); ++i) {
            Box box = emptyBox;
            for (int k = index.m_outlines[i].first; k < index.endOf(i); ++k) {
                const Box &reach = index.m_reaches[k];
                box.minX = std::min(box.minX, reach.minX);
                box.maxX = std::max(box.maxX, reach.maxX);
                box.minY = std::min(box.minY, reach.minY);
                box.maxY = std::max(box.maxY, reach.maxY);
            }
            boxes.push_back(box);
        }
        return boxes;
    }

    static double meanHeightOf(const OrderedBoxes &boxes)
    {
        double sum = 0;
        for (int i = 0; i < int(boxes.size()); ++i)
            sum += boxes[i].maxY - boxes[i].minY;
        return sum / double(boxes.size());
    }

    /** Whether every piece begins at the very height where the one before it ends: no level slips through. */
    bool isClosed(size_t outline) const
    {
        const int first = m_index.m_outlines[outline].first;
        const int end = m_index.endOf(outline);
        const vxMono *before = &m_index.m_pieces[size_t(end - 1)].mono;
        for (int i = first; i < end; ++i) {
            const vxMono &piece = m_index.m_pieces[size_t(i)].mono;
            if (!(piece.values[1] == before->values[7]))
                return false;
            before = &piece;
        }
        return true;
    }

    /** Adds the levels at which some piece of an outline has no passage. */
    void addUnsureLevels(size_t outline, std::vector<IntervalIndex::Interval> &unsure) const
    {
        if (!isClosed(outline)) {
            unsure.push_back({ -infinite, infinite });
            return;
        }
        const size_t begin = unsure.size();
        // The levels around a vertex come twice, from the pieces before and behind it.
        const auto add = [&](double lo, double hi) {
            if (unsure.size() > begin && lo <= unsure.back().hi && hi >= unsure.back().lo)
                unsure.back() = { std::min(lo, unsure.back().lo), std::max(hi, unsure.back().hi) };
            else
                unsure.push_back({ lo, hi });
        };
        for (int i = m_index.m_outlines[outline].first; i < m_index.endOf(outline); ++i) {
            const vxMono &piece = m_index.m_pieces[size_t(i)].mono;
            const Passage &passage = m_index.m_pieces[size_t(i)].passage;
            const Box &reach = m_index.m_reaches[i];
            if (!(passage.low < passage.high)) {
                add(reach.minY, reach.maxY);
            } else if (piece.values[1] < piece.values[7]) {
                add(reach.minY, passage.low);
                add(passage.high, reach.maxY);
            } else {
                add(passage.high, reach.maxY);
                add(reach.minY, passage.low);
            }
        }
    }

    const MonoIndex &m_index;
    OrderedBoxes m_boxes;
    const double m_meanHeight;
    IntervalIndex m_unsure;
    /** The outline of each interval. */
    std::vector<int> m_unsureOutlines;
    std::array<Level, 256> m_levels;
    std::vector<int> m_found;
};

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
        if (!isCounted(path, i, c)) {
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
    // Building costs about as much as a question to the runs for each so many pieces.
    constexpr int piecesPerQuestion = 64;
    if (m_questions < size() / piecesPerQuestion) {
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

void MonoIndex::findNearLevel(const vxPoint &point, double slack, std::vector<int> &found) const
{
    found.clear();
    visitNearLevel(point, slack, [&found](int i) { found.push_back(i); });
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

void MonoIndex::visitLevel(const vxPoint &point, const std::vector<int> &nearLevel, int first, int last,
                           LevelCount &count) const
{
    OutlineVisit visit(*this, count);
    for (int i : nearLevel) {
        const Box &reach = m_reaches[i];
        if (i >= first && i < last && reach.minY <= point.y && point.y <= reach.maxY)
            visit(i);
    }
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
