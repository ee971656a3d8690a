#include "vxmatrix.h"
#include "vxrect.h"

#include <gtest/gtest.h>

#include <QString>

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

TEST(Matrices, singular_and_infinite)
{
    vxMatrix shifted(1, 0, 0, 1, HUGE_VAL, 0);
    EXPECT_TRUE(vxMatrix(1, 2, 2, 4, 0, 0).isSingular() && shifted.isSingular());
    shifted.invert();
    EXPECT_EQ(shifted, vxMatrix(1, 0, 0, 1, HUGE_VAL, 0));
    EXPECT_EQ(shifted.inverseTransform(p), p);
}

TEST(Matrices, lists_of_coordinates)
{
    const vxMatrix quarter(0, 1, -1, 0, 10, 0);
    QVector<double> coords{ 1, 2, 3, 4, 5 };
    quarter.transformCoords(coords, 1000); // more than there are; half a pair stays
    EXPECT_EQ(coords, (QVector<double>{ 8, 1, 6, 3, 5 }));
    quarter.transformCorners(vxRect(0, 0, 2, 1), coords);
    EXPECT_EQ(coords, (QVector<double>{ 10, 0, 10, 2, 9, 2, 9, 0 }));
    EXPECT_EQ(quarter.transformBounds(vxRect(0, 0, 2, 1)), vxRect(9, 0, 1, 2));
}

TEST(Matrices, text_form_has_the_misplaced_marker)
{
    EXPECT_EQ(vxMatrix().toString(), QString("a: 1, b: 0, c: 0, d: 4%, tx: 1, ty: 0"));
}

} // namespace
