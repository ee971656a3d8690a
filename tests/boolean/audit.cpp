#include "support/shapes.h"

#include "area.h"
#include "pzpath.h"
#include "vxboolean_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

using shapes::areaOf;
using shapes::Outline;
using shapes::read;
using shapes::text;
using shapes::XPathPtr;

namespace {

struct Answer {
    vxBooleanReport report;
    XPathPtr path;

    Answer(const XPathPtr &a, const XPathPtr &b, int op, vx::AuditMode mode = vx::AuditMode::WhereDoubtful)
        : path(vx::computeBoolean(a.get(), b.get(), op, mode, report))
    {
    }
    bool isDoubtful() const { return report.verdict == vxBooleanReport::Doubtful; }
};

/** Area of the box around both. */
double boxOf(const XPathPtr &a, const XPathPtr &b)
{
    const vxRect box = a->getBounds(vxBoundOpt::geometric(), vxStyle())
                           .unite(b->getBounds(vxBoundOpt::geometric(), vxStyle()));
    return box.width * box.height;
}

/**
 * An ellipse, a polygon or curves, which may cross themselves; those on a grid touch and share edges with
 * others.
 */
std::string randomShape(shapes::Random &random, bool onGrid)
{
    const auto number = [&](double low, double high) {
        return onGrid ? 20 * std::round(random.between(low, high) / 20) : random.between(low, high);
    };
    if (random.between(0, 3) < 1)
        return shapes::ellipse(number(0, 100), number(0, 100), number(20, 60), number(20, 60));
    const bool curved = random.between(0, 3) < 1;
    std::string data;
    for (int i = int(random.between(3, 8)); i > 0; --i) {
        const bool first = data.empty();
        data += first ? "M " : curved ? "C " : "L ";
        for (int point = first || !curved ? 1 : 3; point > 0; --point)
            data += std::to_string(number(0, 100)) + ' ' + std::to_string(number(0, 100)) + ' ';
    }
    return data + "Z ";
}

/** An ellipse, or a star around its middle, its corners on a grid, some of its sides curved. */
std::string simpleShape(shapes::Random &random, bool isCurved)
{
    const double x = 10 * std::round(random.between(2, 8));
    const double y = 10 * std::round(random.between(2, 8));
    if (random.between(0, 3) < 1)
        return shapes::ellipse(x, y, 10 * std::round(random.between(1, 4)),
                               10 * std::round(random.between(1, 4)));
    const int corners = int(random.between(3, 8));
    std::string data;
    vxPoint last;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::acos(-1.) * i / corners;
        const double radius = random.between(15, 45);
        const vxPoint p(10 * std::round((x + radius * std::cos(angle)) / 10),
                        10 * std::round((y + radius * std::sin(angle)) / 10));
        const auto append = [&data](const vxPoint &q) {
            data += std::to_string(q.x) + ' ' + std::to_string(q.y) + ' ';
        };
        if (i > 0 && isCurved && random.between(0, 2) < 1) {
            const vxPoint way = p.subtract(last);
            const vxPoint bulge = vxPoint(-way.y, way.x).multiply(random.between(-0.1, 0.1));
            data += "C ";
            append(last.add(way.multiply(1. / 3)).add(bulge));
            append(last.add(way.multiply(2. / 3)).add(bulge));
        } else {
            data += i == 0 ? "M " : "L ";
        }
        append(p);
        last = p;
    }
    return data + "Z ";
}

/** Whether a contour passes no point twice. */
bool isSimple(const vxPath &contour)
{
    const QList<vxSegment *> segments = contour.getSegments();
    for (const vxSegment *s : segments) {
        const auto same = [s](const vxSegment *other) { return s->point == other->point; };
        if (std::count_if(segments.begin(), segments.end(), same) != 1)
            return false;
    }
    return true;
}

/** A contour left of both, its middle and size such that any arithmetic with it would round. */
std::string besides(const XPathPtr &a, const XPathPtr &b)
{
    const vxRect box = a->getBounds(vxBoundOpt::geometric(), vxStyle())
                           .unite(b->getBounds(vxBoundOpt::geometric(), vxStyle()));
    return shapes::ellipse(box.x - 1e3 / 3, box.y - 1e3 / 7, 1e2 / 11, 1e2 / 13);
}

/** Coordinates of all points of a contour, in an order that forgets where it starts and which way it runs. */
QVector<double> coordinatesOf(const vxPath &contour)
{
    QVector<double> values;
    for (const vxCurve *curve : contour.getCurves())
        values += curve->getValues();
    std::sort(values.begin(), values.end());
    return values;
}

/** Answers every operation and holds what is true of any answer against it; counts calls by their verdict. */
class Auditor
{
public:
    template <typename Check>
    void run(const std::string &dataA, const std::string &dataB, Check isRight)
    {
        const XPathPtr a = read(dataA);
        const XPathPtr b = read(dataB);
        const double box = boxOf(a, b);
        for (int op = 1; op <= 4; ++op) {
            SCOPED_TRACE("operation " + std::to_string(op) + "\nA: " + dataA + "\nB: " + dataB);
            const Answer answer(a, b, op);
            ++m_calls[answer.report.verdict];
            if (!answer.isDoubtful())
                isRight(*answer.path, op, box);
            if (answer.report.verdict == vxBooleanReport::Plain) {
                const Answer audited(a, b, op, vx::AuditMode::Always);
                EXPECT_NE(audited.report.verdict, vxBooleanReport::Replaced);
                EXPECT_TRUE(audited.isDoubtful() ||
                            std::fabs(areaOf(*audited.path) - areaOf(*answer.path)) <= 1e-6 * box)
                    << areaOf(*answer.path) << " unless audited, then " << areaOf(*audited.path);
            }
            if (answer.report.verdict == vxBooleanReport::Replaced) {
                for (const vxPath *contour : qAsConst(answer.path->children))
                    EXPECT_TRUE(isSimple(*contour));
                expectUntouched(dataA + besides(a, b), b, op);
            }
        }
    }
    /** Checks points that are clear of both outlines. */
    void runByPoints(const std::string &dataA, const std::string &dataB, shapes::Random &random)
    {
        const Outline a(*read(dataA));
        const Outline b(*read(dataB));
        run(dataA, dataB, [&](const XPath &result, int op, double) {
            const Outline outline(result);
            for (int i = 0; i < 100; ++i) {
                const vxPoint p = random.between(vxPoint(-60, -60), vxPoint(160, 160));
                const bool inA = a.contains(p);
                const bool inB = b.contains(p);
                const bool expected[] = { inA && inB, inA || inB, inA && !inB, inA != inB };
                if (a.isOff(p, 1e-3) && b.isOff(p, 1e-3)) {
                    ASSERT_EQ(outline.contains(p), expected[op - 1]) << p.x << ' ' << p.y;
                }
            }
        });
    }
    void expectAllVerdicts() const
    {
        std::printf("%d calls plain, %d audited, %d replaced, %d doubtful\n", m_calls[0], m_calls[1],
                    m_calls[2], m_calls[3]);
        for (int verdict : { vxBooleanReport::Plain, vxBooleanReport::Audited, vxBooleanReport::Replaced })
            EXPECT_GT(m_calls[verdict], 0) << "a verdict that is never given";
    }

private:
    static void expectUntouched(const std::string &dataA, const XPathPtr &b, int op)
    {
        const XPathPtr a = read(dataA);
        const Answer answer(a, b, op);
        int found = 0;
        for (const vxPath *contour : qAsConst(answer.path->children))
            found += coordinatesOf(*contour) == coordinatesOf(*a->getLastChild());
        if (answer.report.verdict == vxBooleanReport::Replaced) {
            EXPECT_EQ(found, op != 1) << "the contour that meets nothing";
        }
    }

    int m_calls[4] = {};
};

} // namespace

TEST(Audit, leaves_no_wrong_area_on_samples)
{
    Auditor auditor;
    for (const shapes::Case &c : shapes::corpusCases()) {
        auditor.run(c.a, c.b, [&c](const XPath &result, int op, double box) {
            EXPECT_NEAR(areaOf(result), c.area[op], 1e-5 * box) << c.id;
        });
    }
    auditor.expectAllVerdicts();
}

TEST(Audit, leaves_no_wrong_point_on_random_shapes)
{
    Auditor auditor;
    shapes::Random random(3);
    const int rounds = shapes::countFrom("PZ_RANDOM_PAIRS", 300);
    for (int round = 0; round < rounds; ++round)
        auditor.runByPoints(randomShape(random, round % 3), randomShape(random, round % 3), random);
    auditor.expectAllVerdicts();
}

TEST(Audit, leaves_no_wrong_point_on_shapes_that_share_borders)
{
    Auditor auditor;
    shapes::Random random(8);
    const int rounds = shapes::countFrom("PZ_RANDOM_PAIRS", 300) / 3;
    for (int round = 0; round < rounds; ++round) {
        // Results run along what they were made of, and along each other.
        std::vector<std::string> shapes;
        for (int i = 0; i < 2; ++i)
            shapes.push_back(simpleShape(random, round % 4));
        for (int op = 1; op <= 4; ++op) {
            const Answer answer(read(shapes[0]), read(shapes[1]), op);
            if (!answer.path->children.isEmpty() && !answer.isDoubtful())
                shapes.push_back(text(*answer.path));
        }
        const auto any = [&] { return shapes[size_t(random.between(0, double(shapes.size())))]; };
        for (int pair = 0; pair < 2; ++pair)
            auditor.runByPoints(any(), any(), random);
    }
    auditor.expectAllVerdicts();
}

TEST(Audit, leaves_no_wrong_point_on_operands_that_cross_and_touch_themselves)
{
    Auditor auditor;
    shapes::Random random(5);
    const int rounds = shapes::countFrom("PZ_RANDOM_PAIRS", 300) / 2;
    for (int round = 0; round < rounds; ++round) {
        const auto shape = [&] { return simpleShape(random, round % 4 == 0); };
        auditor.runByPoints(shape() + shape(), round % 3 == 0 ? shape() + shape() : shape(), random);
    }
    auditor.expectAllVerdicts();
}

TEST(Audit, sees_a_walk_that_goes_straight_on_at_a_crossing)
{
    Auditor auditor;
    shapes::Random random(2);
    auditor.runByPoints("M 0 40 C 100 40 20 40 60 20 C 40 80 100 60 80 40 Z ",
                        "M 20 80 C 40 80 60 100 0 20 C 100 100 20 20 0 100 C 40 40 60 80 80 80 Z ", random);
}

TEST(Audit, sees_curves_that_run_forth_and_back_over_themselves)
{
    // The middle of each outline lies where its curve lies on itself.
    const struct {
        std::string fold;
        double area;
    } rows[] = {
        { "M 20 0 C 40 0 40 0 0 0 L 0 60 Z", 600 },
        { "M 60 40 C 60 40 40 0 80 80 L 20 0 Z", 400 },
        { "M 0 0 C 90 30 90 30 0 0 L 0 -9 L -9 0 Z", 40.5 },
    };
    const XPathPtr apart = read("M 200 0 L 210 0 L 210 10 L 200 10 Z");
    for (const auto &row : rows) {
        const XPathPtr folded = read(row.fold);
        EXPECT_NEAR(areaOf(*Answer(folded, apart, 2).path), row.area + 100, 1e-6) << row.fold;
        EXPECT_NEAR(areaOf(*Answer(folded, apart, 3).path), row.area, 1e-6) << row.fold;
        EXPECT_NEAR(areaOf(*Answer(apart, folded, 3).path), 100, 1e-6) << row.fold;
    }
}

TEST(Audit, gives_areas_that_are_right_to_a_millionth_of_the_box_or_says_that_they_may_not_be)
{
    const struct {
        const char *name;
        std::string a, b;
        int op;
        double area;
    } rows[] = {
        { "edges_that_rise_by_less_than_counts_as_level", "M 0 300 L 0 0 L 300 0 Z",
          "M 10 0.00001 L 279 0.00006 L 10 200 Z", 2, 45000 },
        { "such_edges_that_cross", "M 250 80 L 556 80 L 556 380 Z",
          "M 250 80.000016 L 555.7 80.00004 L 555.7 380 Z", 3, 89.9644419528 },
        { "a_strip_and_its_copy_nearby", "M 0 0 L 1 0 L 1 10000 L 0 10000 Z",
          "M 0.000005 0 L 1.000005 0 L 1.000005 10000 L 0.000005 10000 Z", 4, 0.1 },
        { "a_sliver_whose_vertices_would_drop_one_by_one",
          "M 189 -60.000000000000007 L 189.85961470000001 -63.000000000000007 L 189.8596 1630 Z",
          "M 189 -60.000000000000007 L 189.85961470000001 -63.1 L 189.85950000000003 1630 Z", 3, 0.0846459 },
        { "a_copy_off_by_what_is_joined",
          "M 58.900000000000006 97.900000000000006 L 33.285938000000002 123.52260000000001 C "
          "7.6570000000000009 83.739000000000004 19.131 72.26400000000001 33.285940000000004 "
          "72.264405000000011 C 47.4405 72.264400000000009 58.915030000000002 83.738900000000001 "
          "58.915000000000006 97.89349 Z",
          "M 58.915000000000006 97.894000000000005 L 33.286000000000001 123.52260000000001 C "
          "7.6568500000000004 83.739000000000004 19.131 72.26400000000001 33.286000000000001 "
          "72.264400000000009 C 45.623900000000006 72.264400000000009 55.925580000000004 "
          "80.982650000000007 58.366630000000001 92.594700000000003 Z",
          4, 0.6093387 },
    };
    for (const auto &row : rows) {
        const XPathPtr a = read(row.a);
        const XPathPtr b = read(row.b);
        const Answer answer(a, b, row.op);
        EXPECT_TRUE(answer.isDoubtful() || std::fabs(areaOf(*answer.path) - row.area) <= 1e-6 * boxOf(a, b))
            << row.name << ": " << answer.report.verdictName() << ", " << areaOf(*answer.path) << " for "
            << row.area;
    }
}

TEST(Audit, keeps_what_is_small_in_a_wide_drawing_or_says_that_it_may_not)
{
    const struct {
        std::string a, b;
        double areas[4]; // intersect, unite, subtract, exclude
    } rows[] = {
        { shapes::rectangle(0, 0, 100, 100) + shapes::rectangle(1e9, 0, 100, 100),
          shapes::rectangle(50, 50, 100, 100),
          { 2500, 27500, 17500, 25000 } },
        { shapes::rectangle(0, 0, 1e8, 10), shapes::rectangle(10, 2, 5, 5), { 25, 1e9, 1e9 - 25, 1e9 - 25 } },
        // Too small for the search for crossings, and for any snapping that could replace what it finds.
        { "M 0 0 L 1e9 0 L 0 100 Z", shapes::rectangle(0, 0, 100, 100), {} },
        { "M 0 0 L 1e13 0 L 0 100 Z", shapes::rectangle(0, 0, 100, 100), {} },
        { shapes::rectangle(0, 0, 1e8, 1e-4), shapes::rectangle(10, -1, 10, 2), {} },
    };
    for (const auto &row : rows) {
        const XPathPtr a = read(row.a);
        const XPathPtr b = read(row.b);
        for (int op = 1; op <= 4; ++op) {
            const Answer answer(a, b, op);
            const double area = row.areas[op - 1];
            EXPECT_EQ(answer.isDoubtful(), area == 0) << row.a << ", operation " << op;
            if (area != 0) {
                EXPECT_NEAR(areaOf(*answer.path), area, 1e-6 * area) << row.a << ", operation " << op;
            }
        }
    }
    const XPathPtr wide = read(rows[3].a);
    const XPathPtr small = read(rows[3].b);
    vxBooleanReport report;
    const XPathPtr united(XPath::uniteAll({ wide.get(), small.get() }, report));
    EXPECT_EQ(report.verdict, vxBooleanReport::Doubtful);
    // Thinner than the snapping distance that is tried first.
    const XPathPtr far = read(shapes::rectangle(0, 0, 100, 100) + shapes::rectangle(1e4, 0, 100, 100));
    const XPathPtr thin = read(shapes::rectangle(300, 300, 2500, 2e-4));
    EXPECT_NEAR(areaOf(*XPathPtr(XPath::uniteAll({ far.get(), thin.get() }))), 20000.5, 1e-6);
}

TEST(UnitingAll, gives_the_area_of_uniting_in_turn)
{
    shapes::Random random(5);
    std::vector<XPathPtr> discs;
    QList<XPath *> paths;
    QVector<PZPath> elements;
    auto inTurn = std::make_unique<XPath>();
    for (int i = 0; i < 60; ++i) {
        const vxPoint center = random.between(vxPoint(0, 0), vxPoint(300, 300));
        const double radius = random.between(10, 40);
        discs.push_back(read(shapes::ellipse(center.x, center.y, radius, radius)));
        paths.append(discs.back().get());
        elements.append(PZPath());
        elements.last().fromXPath(*discs.back());
        inTurn.reset(inTurn->unite(discs.back().get()));
    }
    const XPathPtr atOnce(XPath::uniteAll(paths));
    const double margin = 1e-9 * boxOf(atOnce, inTurn);
    EXPECT_NEAR(filledArea(*atOnce), filledArea(*inTurn), margin);
    XPath ofElements;
    PZPath::uniteAll(elements).toXPath(ofElements);
    EXPECT_NEAR(filledArea(ofElements), filledArea(*atOnce), margin);

    XPath empty;
    const XPathPtr line = read("M -50 150 L 400 150");
    vxBooleanReport report;
    const QList<XPath *> nothing = { nullptr, &empty, line.get() };
    EXPECT_EQ(text(*XPathPtr(XPath::uniteAll(nothing + paths + nothing, report))), text(*atOnce));
    EXPECT_EQ(report.verdict, vxBooleanReport::Audited);
    EXPECT_EQ(areaOf(*XPathPtr(XPath::uniteAll(nothing))), 0);
    const XPathPtr open = read("M 0 0 L 10 0 L 10 10 L 0 10"); // as painter paths have rectangles
    const XPathPtr inside = read("M 2 2 L 4 2 L 4 4 L 2 4 Z");
    EXPECT_NEAR(areaOf(*XPathPtr(XPath::uniteAll({ open.get(), inside.get() }))), 100, 1e-9);
}
