#include "support/shapes.h"

#include "vxcurvelocation.h"
#include "vxintersections_p.h"
#include "vxlocationowner_p.h"
#include "vxmeetingfilter_p.h"
#include "vxrunnotes_p.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

/** A filter for a whole search beside one for each meeting, which has no answers to remember. */
struct TwoFilters {
    vx::RunNotes kept;
    vx::RunNotes fresh;
    vx::MeetingFilter filter{ kept };
    int rejected = 0;
    int differing = 0;

    bool accepts(vxCurveLocation *location)
    {
        const bool wanted = vx::MeetingFilter(fresh).accepts(*location);
        differing += filter.accepts(*location) != wanted;
        rejected += !wanted;
        return wanted;
    }
    bool haveEqualNotes() const
    {
        return kept.overlap == fresh.overlap && kept.touch == fresh.touch && kept.shallow == fresh.shallow &&
               kept.atVertex == fresh.atVertex;
    }
};

} // namespace

TEST(MeetingFilter, gives_answers_that_a_fresh_look_gives)
{
    int found = 0;
    int rejected = 0;
    for (const shapes::Case &c : shapes::cases({ "overlap", "degenerate", "maps" })) {
        const shapes::XPathPtr a = shapes::read(c.a);
        const shapes::XPathPtr b = shapes::read(c.b);
        for (XPath *other : { b.get(), static_cast<XPath *>(nullptr) }) {
            TwoFilters filters;
            vx::SearchDoubts doubts;
            const QList<vxCurveLocation *> locations = vx::findIntersections(
                *a, other, [&](vxCurveLocation *l) { return filters.accepts(l); }, doubts);
            const vx::LocationOwner owner(locations);
            EXPECT_EQ(filters.differing, 0) << c.id;
            EXPECT_TRUE(filters.haveEqualNotes()) << c.id;
            found += locations.size();
            rejected += filters.rejected;
        }
    }
    std::printf("%d meetings, %d rejected\n", found, rejected);
    EXPECT_GT(found, 300);
    EXPECT_GT(rejected, 300);
}
