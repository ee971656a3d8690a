#include "path_fixtures.h"

#include "vxbatch_p.h"
#include "vxcurvelocation.h"
#include "vxlengthen_p.h"
#include "xpath.h"

#include <algorithm>
#include <random>
#include <vector>

using namespace fixture;

namespace {

// The sanitizers do the judging here: no object and no block may be touched after its end, and none may stay.

TEST(Batches, objects_die_in_any_order_while_others_are_made)
{
    std::mt19937 random(5);
    for (size_t expected : { 0, 1, 3, 64, 65, 1000 }) {
        vxBatch<vxSegment> batch(expected);
        std::vector<vxRef<vxSegment>> living;
        for (int made = 0; made < 200; ++made) {
            living.emplace_back(batch.make(made, -made));
            std::shuffle(living.begin(), living.end(), random);
            while (random() % 2 && !living.empty())
                living.pop_back();
        }
        for (const vxRef<vxSegment> &segment : living)
            EXPECT_EQ(segment->point.x, -segment->point.y);
    }
}

TEST(Batches, a_full_block_may_go_before_its_batch_and_a_started_one_after_it)
{
    std::vector<vxRef<vxSegment>> later;
    {
        vxBatch<vxSegment> full(2);
        vxRef<vxSegment>(full.make(1, 1));
        vxRef<vxSegment>(full.make(2, 2));
        vxBatch<vxSegment> started(2);
        later.emplace_back(started.make(3, 3));
    }
    EXPECT_EQ(later.front()->point.x, 3);
    EXPECT_EQ(later.front()->refCount, 1u);
}

TEST(Batches, parts_of_a_copy_outlive_it_and_each_other)
{
    std::vector<vxRef<vxSegment>> kept;
    {
        XPath shape;
        for (int i = 0; i < 5; ++i)
            shape.addChild(square().take());
        const std::unique_ptr<XPath> copy(shape.clone());
        copy->_makeCurves();
        for (const vxPath *child : qAsConst(copy->children)) {
            expectConsistent(*child);
            kept.emplace_back(child->getFirstSegment());
            EXPECT_EQ(kept.back()->refCount, 4u) << "path, two curves and the list here";
        }
    }
    for (const vxRef<vxSegment> &segment : kept) {
        EXPECT_EQ(segment->refCount, 1u);
        EXPECT_EQ(segment->path, nullptr);
    }
}

TEST(Lengthening, adds_as_many_as_asked_and_leaves_copies_alone)
{
    int items[200];
    for (int before : { 0, 1, 5, 40 }) {
        for (int count : { 1, 2, 31, 32, 33, 64, 150 }) {
            QList<int *> list;
            for (int i = 0; i < before; ++i)
                list.append(&items[i]);
            const QList<int *> copy = list;
            int **added = vx::lengthen(list, count);
            for (int i = 0; i < count; ++i)
                added[i] = &items[before + i];
            ASSERT_EQ(list.size(), before + count);
            for (int i = 0; i < list.size(); ++i)
                EXPECT_EQ(list.at(i), &items[i]);
            EXPECT_EQ(copy, list.mid(0, before));
        }
    }
}

} // namespace
