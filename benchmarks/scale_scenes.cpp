#include "scenes.h"
#include "vxcurvelocation.h"
#include "xpath.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

// Writes one pair of shapes of any size as a line of a corpus file: how a boolean grows beyond the series
// that a corpus brings along.

namespace {

struct Family {
    const char *name;
    scenes::Pair (*make)(int curves);
};

constexpr Family families[] = {
    { "longrings", scenes::longRings },
    { "grids", scenes::ellipseGrids },
};

int countCrossings(const scenes::Pair &pair)
{
    const std::unique_ptr<XPath> a = toXPath(pair.first);
    const std::unique_ptr<XPath> b = toXPath(pair.second);
    const QList<vxCurveLocation *> crossings = a->getCrossings(b.get());
    const int count = crossings.size();
    vxCurveLocation::releaseAll(crossings);
    return count;
}

} // namespace

int main(int argc, char **argv)
{
    const int curves = argc == 3 ? std::atoi(argv[2]) : 0;
    for (const Family &family : families) {
        if (curves < 4 || std::strcmp(argv[1], family.name) != 0)
            continue;
        const scenes::Pair pair = family.make(curves);
        const QString line = QStringLiteral("%1-%2\tn:%2,x:%3\t%4\t%5")
                                 .arg(QLatin1String(family.name))
                                 .arg(curves)
                                 .arg(countCrossings(pair))
                                 .arg(toText(pair.first), toText(pair.second));
        std::puts(line.toUtf8().constData());
        return 0;
    }
    std::fputs("usage: pz_scale_scenes longrings|grids CURVES\n", stderr);
    return 2;
}
