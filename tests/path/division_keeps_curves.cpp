#include "path_fixtures.h"

#include "vxcurvelocation.h"

using namespace fixture;

namespace {

const QVector<double> sCurve = { 0, 0, 20, 10, 40, -5, 60, 10 };

TEST(DivisionKeepsCurves, both_halves_lie_on_the_divided_curve)
{
    for (double t : { 4e-7, 0.25, 0.5, 0.9, 0.9999996 }) {
        SCOPED_TRACE(t);
        const vxRef<vxPath> path = wave();
        const vxRef<vxPath> original(path->clone());
        const QList<vxCurve *> before = path->getCurves();
        vxCurve *second = before.at(0)->divideAtTime(t, false);
        ASSERT_NE(second, nullptr);
        EXPECT_EQ(path->getCurves(), (QList<vxCurve *>{ before.at(0), second, before.at(1), before.at(2) }));
        const vxCurve *whole = original->getFirstCurve();
        for (int i = 0; i <= 10; ++i) {
            expectPoint(before.at(0)->getPointAtTime(i / 10.0), whole->getPointAtTime(t * i / 10));
            expectPoint(second->getPointAtTime(i / 10.0), whole->getPointAtTime(t + (1 - t) * i / 10));
        }
        EXPECT_NEAR(path->getLength(), original->getLength(), 1e-6);
        expectConsistent(*path);
    }
}

TEST(DivisionKeepsCurves, the_ends_divide_nothing)
{
    const vxRef<vxPath> path = wave();
    const quint32 version = path->version;
    for (double t : { 0.0, 1.0, 3.9e-7, 0.99999965, -1.0, 2.0, undefined, infinity, -100.0 })
        EXPECT_EQ(path->getFirstCurve()->divideAtTime(t, true), nullptr) << t;
    EXPECT_EQ(path->version, version);
    const vxRef<vxCurve> stranger(new vxCurve(sCurve, path.get()));
    EXPECT_EQ(stranger->divideAtTime(0.5, false), nullptr) << "names a path that it is no part of";
    const vxRef<vxCurve> empty(new vxCurve);
    EXPECT_EQ(empty->divideAtTime(0.5, false), nullptr);
}

TEST(DivisionKeepsCurves, a_free_curve_lends_its_new_end_and_keeps_the_old_one)
{
    vxRef<vxCurve> first(new vxCurve(sCurve));
    const vxRef<vxSegment> oldEnd(first->segment2());
    const double length = first->getLength();
    vxRef<vxCurve> second(first->divideAtTime(0.5, false));
    const vxRef<vxSegment> middle(second->segment1());
    EXPECT_EQ(first->segment2(), middle.get());
    EXPECT_EQ(second->path(), nullptr);
    EXPECT_EQ(middle->refCount, 2u) << "held here and by the second half alone";
    EXPECT_EQ(oldEnd->refCount, 3u) << "held here and by both";
    EXPECT_NEAR(first->getLength() + second->getLength(), length, 1e-5);

    vxRef<vxCurve> third(first->divideAtTime(0.5, false));
    EXPECT_EQ(third->segment2(), middle.get());
    second = vxRef<vxCurve>();
    third = vxRef<vxCurve>();
    first = vxRef<vxCurve>();
    EXPECT_EQ(middle->refCount, 1u);
    EXPECT_EQ(oldEnd->refCount, 1u);
}

TEST(DivisionKeepsCurves, values_shorter_than_a_curve_give_the_neutral_answer)
{
    const QVector<double> tooShort = sCurve.mid(0, 7);
    EXPECT_TRUE(vxCurve::getPoint(tooShort, 0.5).isNaN());
    EXPECT_TRUE(vxCurve::_evaluate(sCurve, 0.5, 4, false).isNaN());
    EXPECT_EQ(vxCurve::getLength(tooShort), 0);
    EXPECT_EQ(vxCurve::getTimeAt(tooShort, 1, 0), -100);
    EXPECT_TRUE(vxCurve::subdivide(tooShort, 0.5).isEmpty());
    QVector<double> roots;
    EXPECT_EQ(vxCurve::solveCubic(tooShort, 0, 1, roots, 0, 1), 0);
    EXPECT_EQ(vxCurve::solveCubic(sCurve, 2, 1, roots, 0, 1), 0);
    ASSERT_EQ(vxCurve::solveCubic(sCurve, 0, 60, roots, 0, 1), 1);
    EXPECT_NEAR(roots.first(), 1, 1e-6);

    const vxRef<vxCurve> empty(new vxCurve(tooShort));
    EXPECT_EQ(empty->segment1(), nullptr);
    EXPECT_TRUE(empty->getPointAt(3).isNaN());
    EXPECT_EQ(empty->getLength(), 0);
}

} // namespace
