#include "vxpath.h"

#include "vxmonoindex_p.h"
#include "vxmonopieces_p.h"
#include "vxoutline_p.h"
#include "vxtolerance.h"
#include "vxturns_p.h"

#include <utility>

using namespace vxTolerance;

int vx::monotonePieces(const Cubic &c, vxMono pieces[3])
{
    double roots[2];
    int count = 0;
    if (!isOnePiece(c) && !isStraight(c))
        count = turnTimes(c, 1, roots, timeMargin, timeUpper);
    if (count <= 0) {
        pieces[0] = pieceOf(c);
        return 1;
    }
    if (count > 1 && roots[0] > roots[1])
        std::swap(roots[0], roots[1]);
    Cubic first, rest;
    subdivide(c, roots[0], first, rest);
    pieces[0] = pieceOf(first);
    if (count > 1) {
        Cubic second;
        subdivide(rest, (roots[1] - roots[0]) / (1 - roots[0]), second, rest);
        pieces[1] = pieceOf(second);
    }
    pieces[count] = pieceOf(rest);
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
        if (!vx::isCounted(c))
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
