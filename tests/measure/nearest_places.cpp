#include "support/shapes.h"

#include "vxcurvelocation.h"
#include "vxref_p.h"

#include <gtest/gtest.h>

#include <limits>

TEST(NearestPlaces, are_those_of_asking_every_curve)
{
    shapes::Random random(4);
    int ties = 0;
    for (const shapes::Case &c : shapes::cases({ "icons", "maps" })) {
        const shapes::XPathPtr path = shapes::read(c.a);
        path->assign(*shapes::read(c.a)); // every curve twice: the first of a pair must win
        const vxRect box = path->getBounds(vxBoundOpt::geometric(), vxStyle());
        const QList<vxCurve *> curves = path->getCurves();
        for (int i = 0; i < 20; ++i) {
            const vxPoint p = random.between(box.topLeft().multiply(1.5), box.bottomRight().multiply(1.5));
            const vxCurve *plain = nullptr;
            double plainDistance = std::numeric_limits<double>::infinity();
            for (const vxCurve *curve : curves) {
                const double distance = p.getDistance(curve->getPointAtTime(curve->getNearestTime(p)));
                ties += distance == plainDistance;
                if (distance < plainDistance) {
                    plain = curve;
                    plainDistance = distance;
                }
            }
            const vxRef<vxCurveLocation> found(path->getNearestLocation(p));
            ASSERT_EQ(found->distance, plainDistance) << c.id;
            const double time = plain->getNearestTime(p);
            ASSERT_TRUE(found->point == plain->getPointAtTime(time)) << c.id;
            if (time < vxTolerance::timeUpper) {
                ASSERT_EQ(found->curve, plain) << c.id;
                ASSERT_EQ(found->time, time) << c.id;
            }
        }
    }
    EXPECT_GT(ties, 300);
}
