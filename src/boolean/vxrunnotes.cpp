#include "vxrunnotes_p.h"

#include "vxintersections_p.h"

#include <cstddef>

namespace vx {

namespace {

/** Some of the fields, in code that costs no more than naming each. */
template <bool RunNotes::*...field>
struct Fields {
    static constexpr std::size_t count = sizeof...(field);

    static bool any(const RunNotes &notes) { return ((notes.*field) || ...); }
    static void add(RunNotes &sum, const RunNotes &part) { ((sum.*field |= part.*field), ...); }
};

using Doubts =
    Fields<&RunNotes::overlap, &RunNotes::touch, &RunNotes::shallow, &RunNotes::atVertex,
           &RunNotes::selfCrossing, &RunNotes::simplified, &RunNotes::folded, &RunNotes::misdirected,
           &RunNotes::grazedNesting, &RunNotes::chained, &RunNotes::movedSample, &RunNotes::grazedSample,
           &RunNotes::discardedContour, &RunNotes::tiltedLevel, &RunNotes::mayMissMeetings,
           &RunNotes::nearMiss, &RunNotes::open, &RunNotes::outOfScale>;
/** What is no doubt and true of a whole if it is of a part. */
using Facts = Fields<&RunNotes::counterClockwise, &RunNotes::limitHit, &RunNotes::touchOffVertex>;
/** What is said of a whole run alone. */
using RunFacts = Fields<&RunNotes::settled>;
static_assert(sizeof(RunNotes) == (Doubts::count + Facts::count + RunFacts::count) * sizeof(bool),
              "every field is in one of the lists");

} // namespace

void RunNotes::add(const RunNotes &part)
{
    Doubts::add(*this, part);
    Facts::add(*this, part);
}

void RunNotes::add(const SearchDoubts &search)
{
    mayMissMeetings |= !search.unfinished.empty();
    limitHit |= !search.unfinished.empty();
    nearMiss |= !search.nearMisses.empty();
}

void RunNotes::settle()
{
    RunNotes certain;
    certain.counterClockwise = counterClockwise;
    certain.limitHit = limitHit;
    certain.settled = true;
    *this = certain;
}

bool RunNotes::anyDoubt() const
{
    return Doubts::any(*this);
}

} // namespace vx
