#include "vxmatrix.h"

#include <gtest/gtest.h>

namespace {

const vxMatrix m(2, 1, -1, 3, 5, -4);
const vxPoint p(7, -2);

template <typename Edit>
vxPoint mappedAfter(Edit &&edit)
{
    vxMatrix edited = m;
    edit(edited);
    return edited.transformPoint(p);
}

TEST(Matrices, edits_act_before_the_existing_map)
{
    const vxPoint center(2, 3);
    EXPECT_EQ(mappedAfter([](vxMatrix &e) { e.translate(4, 5); }), m.transformXY(11, 3));
    EXPECT_EQ(mappedAfter([&](vxMatrix &e) { e.scale(2, -3, &center); }), m.transformXY(12, 18));
    EXPECT_EQ(mappedAfter([&](vxMatrix &e) { e.shear(2, 0.5, &center); }), m.transformXY(-3, 0.5));
    const vxPoint turned = mappedAfter([&](vxMatrix &e) { e.rotateAt(30, center); });
    EXPECT_LT(turned.getDistance(m.transformPoint(p.rotate(30, &center))), 1e-13);
}

TEST(Matrices, products_and_inverses)
{
    const vxMatrix n(0, 2, 1, 1, 3, 3);
    EXPECT_EQ(mappedAfter([&](vxMatrix &e) { e.append(n); }), m.transformPoint(n.transformPoint(p)));
    EXPECT_EQ(mappedAfter([&](vxMatrix &e) { e.prepend(n); }), n.transformPoint(m.transformPoint(p)));
    EXPECT_EQ(mappedAfter([](vxMatrix &e) { e.append(e); }), m.transformPoint(m.transformPoint(p)));
    EXPECT_LT(mappedAfter([](vxMatrix &e) { e.invert(); }).getDistance(m.inverseTransform(p)), 1e-14);
    EXPECT_LT(m.inverseTransform(m.transformPoint(p)).getDistance(p), 1e-14);
}

} // namespace
