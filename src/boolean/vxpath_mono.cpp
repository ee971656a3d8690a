#include "vxpath.h"

#include "vxmonoindex_p.h"
#include "vxmonopieces_p.h"
#include "vxnumeric_p.h"
#include "vxtolerance.h"

#include <cstring>
#include <utility>

using namespace vxTolerance;

namespace {

void makePiece(const vx::Cubic &c, vxMono &piece)
{
    std::memcpy(piece.values, c.v, sizeof c.v);
    const double slope = (c.v[1] - c.v[7]) / (c.v[0] - c.v[6]);
    // A closed piece has a NaN slope, which is no level one: it winds, by its ends upwards.
    piece.winding = std::fabs(slope) < closeDistance ? 0 : c.v[1] > c.v[7] ? -1 : 1;
}

/**
 * Whether the arc length, as computed, is not 0. Ends that are apart give a straight curve its distance and
 * any other a speed that is not 0 everywhere, without integrating it; so near each other that squares of
 * their distance vanish, or with NaN, it takes the length itself.
 */
bool hasLength(const vx::Cubic &c)
{
    constexpr double apart = 1e-6;
    return std::fabs(c.v[6] - c.v[0]) > apart || std::fabs(c.v[7] - c.v[1]) > apart || vx::length(c) != 0;
}

bool isMonotone(double y0, double y1, double y2, double y3)
{
    return (y0 >= y1) == (y1 >= y2) && (y1 >= y2) == (y2 >= y3);
}

} // namespace

bool vx::isCounted(const vxPath &path, int i, const Cubic &c)
{
    return hasLength(c) || i >= path._countCurves();
}

int vx::monotonePieces(const Cubic &c, vxMono pieces[3])
{
    const double y0 = c.v[1], y1 = c.v[3], y2 = c.v[5], y3 = c.v[7];
    double roots[2];
    int count = 0;
    if (!isMonotone(y0, y1, y2, y3) && !surelyHasNoExtremum(y0, y1, y2, y3) && !isStraight(c))
        count = solveQuadratic(3 * (y1 - y2) - y0 + y3, 2 * (y0 + y2) - 4 * y1, y1 - y0, roots, timeMargin,
                               timeUpper);
    if (count <= 0) {
        makePiece(c, pieces[0]);
        return 1;
    }
    if (count > 1 && roots[0] > roots[1])
        std::swap(roots[0], roots[1]);
    Cubic first, rest;
    subdivide(c, roots[0], first, rest);
    makePiece(first, pieces[0]);
    if (count > 1) {
        Cubic second;
        subdivide(rest, (roots[1] - roots[0]) / (1 - roots[0]), second, rest);
        makePiece(second, pieces[1]);
    }
    makePiece(rest, pieces[count]);
    return count + 1;
}

QList<vxMono *> vxPath::getMonoCurves() const
{
    if (!m_monos.isEmpty())
        return m_monos;
    const int count = vx::outlineSize(*this);
    m_monoBlock.reserve(size_t(count) * 2);
    for (int i = 0; i < count; ++i) {
        const vx::Cubic c = vx::outlineCurve(*this, i);
        if (!vx::isCounted(*this, i, c))
            continue;
        vxMono pieces[3];
        const int found = vx::monotonePieces(c, pieces);
        m_monoBlock.insert(m_monoBlock.end(), pieces, pieces + found);
    }

    m_monos.reserve(int(m_monoBlock.size()));
    for (vxMono &piece : m_monoBlock)
        m_monos.append(&piece);
    for (int i = m_monos.size() - 1; i >= 0; --i) {
        if (m_monos.at(i)->winding != 0) {
            m_monos.first()->last = m_monos.at(i);
            break;
        }
    }
    return m_monos;
}

const vx::MonoIndex &vxPath::_monoIndex() const
{
    if (!m_monoIndex)
        m_monoIndex = std::make_unique<vx::MonoIndex>(*this);
    return *m_monoIndex;
}

const vx::MonoIndex *vxPath::_monoIndexIfAskedOften() const
{
    constexpr int fewQuestions = 4;
    if (m_questionsVersion != version) {
        m_questionsVersion = version;
        m_questions = 0;
    }
    if (!m_monoIndex && m_questions < fewQuestions) {
        ++m_questions;
        return nullptr;
    }
    return &_monoIndex();
}

void vxPath::clearMonos() const
{
    m_monoIndex.reset();
    m_monos.clear();
    m_monoBlock.clear();
}
