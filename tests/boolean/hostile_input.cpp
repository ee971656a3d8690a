#include "support/shapes.h"

#include "pathdata.h"
#include "vxcurvelocation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <unistd.h>

using shapes::areaOf;
using shapes::ellipse;
using shapes::read;
using shapes::rectangle;
using shapes::text;
using shapes::XPathPtr;

namespace {

/** Ends the program where a call hangs, so that the test is seen to fail. */
class HostileInput : public ::testing::Test
{
protected:
    void SetUp() override { alarm(120); }
    void TearDown() override { alarm(0); }
};

/** Reads path data in which 901 stands for NaN and 902 for infinity, which path data has no words for. */
XPathPtr readStrange(const std::string &data)
{
    const auto strange = [](double v) {
        return v == 901 ? qQNaN() : std::fabs(v) == 902 ? std::copysign(qInf(), v) : v;
    };
    PathCommands commands = parsePathData(QString::fromStdString(data));
    for (PathCommand &command : commands) {
        for (QPointF &p : command.points)
            p = QPointF(strange(p.x()), strange(p.y()));
    }
    return toXPath(commands);
}

bool isFinite(const XPath &path)
{
    const std::string data = text(path);
    return data.find("nan") == std::string::npos && data.find("inf") == std::string::npos;
}

/** What an outside caller can ask of two paths; finite answers for finite questions. */
void askEverything(XPath &a, XPath &b)
{
    for (int op = 0; op <= 5; ++op) {
        const XPathPtr result(XPath::computeBoolean(&a, &b, op));
        EXPECT_TRUE(result || !a.getFirstChild()->isClosed()) << "only an open first operand answers null";
        EXPECT_TRUE(!result || isFinite(*result) || !isFinite(a) || !isFinite(b))
            << "operation " << op << ": " << text(*result);
    }
    vxCurveLocation::releaseAll(a.getIntersections(&b, nullptr));
    vxCurveLocation::releaseAll(a.getIntersections(nullptr, nullptr));
    for (const vxPoint &p : { vxPoint(50, 50), vxPoint(0, 0), vxPoint(1e300, -1e300), vxPoint(qQNaN(), 1) }) {
        for (bool flag : { false, true }) {
            EXPECT_GE(a.getWinding(p, flag).winding, 0);
            a.contains(p, vxStyle::filled(flag));
        }
    }
    for (const vxPath *contour : qAsConst(a.children))
        contour->getInteriorPoint(true);
}

} // namespace

TEST_F(HostileInput, gets_an_answer)
{
    const std::string square = rectangle(0, 0, 100, 100);
    const std::pair<const char *, std::string> rows[] = {
        { "nan_point", "M 0 0 L 901 50 L 100 100 Z" },
        { "nan_handle", "M 0 0 C 901 0 50 901 100 100 L 0 100 Z" },
        { "all_nan", "M 901 901 L 901 901 C 901 901 901 901 901 901 Z" },
        { "infinite_both_ways", "M -902 0 L 902 50 L 50 100 Z" },
        { "infinite_handle", "M 0 0 C 902 0 50 -902 100 100 Z" },
        { "huge", "M -1e300 -1e300 L 1e300 -1e300 L 1e300 1e300 L -1e300 1e300 Z" },
        { "huge_curves", "M 0 0 C 1e300 0 0 1e300 50 50 C -1e300 1e155 1e155 -1e300 0 0 Z" },
        { "largest", "M 0 0 L 1.7976931348623157e308 50 L -1.7976931348623157e308 60 Z" },
        { "nearly_largest", "M 0 0 L 100 4e307 L 50 2e307 Z" },
        { "denormal", "M 0 0 L 5e-324 0 L 5e-324 5e-324 L 0 5e-324 Z" },
        { "denormal_curve", "M 5e-324 0 C 0 5e-324 5e-324 5e-324 1e-310 0 Z" },
        { "tiny", "M 50 50 L 50.0000001 50 L 50.0000001 50.0000001 Z" },
        { "single_point", "M 50 50 Z" },
        { "open_single_point", "M 50 50" },
        { "points_on_one_spot", "M 50 50 L 50 50 L 50 50 C 50 50 50 50 50 50 Z" },
        { "line_there_and_back", "M -50 50 L 150 50 Z" },
        { "curve_there_and_back", "M -50 50 C 20 -90 60 190 150 50 C 60 190 20 -90 -50 50 Z" },
        { "handles_on_the_line_beyond_its_ends", "M 0 0 C 300 0 -200 0 100 0 L 100 100 L 0 100 Z" },
        { "cusps", "M 0 0 C 100 100 0 100 100 0 C 0 -100 100 -100 0 0 Z" },
        { "a_billion_apart", square + rectangle(1e9, 1e9, 100, 100) },
        { "reaching_a_billion_out", "M 0 0 L 1e9 30 L 1e9 60 L 0 100 Z" },
        { "thin_as_a_rounding_error", "M 0 50 L 100 50 L 100 50.00000000000001 L 0 50 Z" },
        { "closer_than_the_tolerance", rectangle(1e-7, 1e-7, 100, 100) },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.first);
        const XPathPtr strange = readStrange(row.second);
        const XPathPtr plain = read(square);
        const XPathPtr round = read(ellipse(50, 50, 60, 40));
        askEverything(*strange, *plain);
        askEverything(*plain, *strange);
        askEverything(*round, *strange);
        askEverything(*strange, *strange);
        EXPECT_EQ(text(*plain), text(*read(square))) << "operands stay as they are";
    }
}

TEST_F(HostileInput, of_many_coincident_contours_is_filled_when_their_number_is_odd)
{
    // Every corner of every contour would meet every other one: places at one corner would grow with the
    // square of their number, and a walk over them for each with its fourth power.
    for (int count : { 2, 3, 4, 5, 30, 31, 200, 201 }) {
        std::string data;
        for (int i = 0; i < count; ++i)
            data += rectangle(0, 0, 100, 100);
        const XPathPtr stack = read(data);
        const XPathPtr other = read(rectangle(50, 50, 100, 100));
        const bool filled = count % 2;
        EXPECT_NEAR(areaOf(*XPathPtr(stack->intersect(other.get()))), filled ? 2500 : 0, 1e-6) << count;
        EXPECT_NEAR(areaOf(*XPathPtr(stack->unite(other.get()))), filled ? 17500 : 10000, 1e-6) << count;
    }
}

TEST_F(HostileInput, far_from_the_origin_keeps_what_the_numbers_can_hold)
{
    // At 1e9 a double steps by 1.2e-7, which is within the tolerance for points at one place.
    const XPathPtr a = read(rectangle(1e9, 1e9, 100, 100));
    const XPathPtr b = read(rectangle(1e9 + 50, 1e9 + 50, 100, 100));
    EXPECT_NEAR(areaOf(*XPathPtr(a->intersect(b.get()))), 2500, 1e-3);
    EXPECT_NEAR(areaOf(*XPathPtr(a->unite(b.get()))), 17500, 1e-3);
}
