/* Values as text. */
#include "kxmaths5/print.hpp"

#include "support/check.h"

#include <iomanip>
#include <sstream>

using namespace kxm;

namespace
{

template <typename Value>
std::string text(const Value &value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

} // namespace

TEST_CASE("streams")
{
    CHECK(text(vec3(1, -2.5f, 3)) == "(1, -2.5, 3)");
    CHECK(text(point3(1, 2, 3)) == "(1, 2, 3)");
    CHECK(text(vec2(1, 2)) == "(1, 2)");
    CHECK(text(point2(1, 2)) == "(1, 2)");
    CHECK(text(point4(1, 2, 3, 4)) == "(1, 2, 3, 4)");
    CHECK(text(quat()) == "xyzw(0, 0, 0, 1)");
    CHECK(text(box({1, 2, 3}, {4, 5, 6})) == "box (1, 2, 3) (4, 5, 6)");
    CHECK(text(line({1, 2, 3}, {4, 5, 6})) == "line (1, 2, 3) (4, 5, 6)");
    CHECK(text(ray({1, 2, 3}, {4, 5, 6})) == "ray (1, 2, 3) (4, 5, 6)");
    CHECK(text(plane(1, 2, 3, -4)) == "plane 1*x + 2*y + 3*z + -4");
    CHECK(text(position({1, 2, 3}, 4, 5, 6)) == "position (1, 2, 3) (4, 5, 6)");
    CHECK(text(mat3(1, 2, 3, 4, 5, 6, 7, 8, -9)) == "1  2   3\n4  5   6\n7  8  -9");
    CHECK(text(mat4::translation({10, 2.5f, -3})) ==
          "1  0  0   10\n0  1  0  2.5\n0  0  1   -3\n0  0  0    1");
    std::ostringstream out;
    out << std::fixed << std::setprecision(2) << vec3(1, 2, 0.125f) << " " << mat3();
    CHECK(out.str() == "(1.00, 2.00, 0.12) 1.00  0.00  0.00\n0.00  1.00  0.00\n0.00  0.00  1.00");
}

#if defined(__cpp_lib_format)
TEST_CASE("formats")
{
    CHECK(std::format("{} {:.1f}", vec3(1, 2, 0.5f), quat()) ==
          "(1, 2, 0.5) xyzw(0.0, 0.0, 0.0, 1.0)");
    CHECK(std::format("{:3}", mat3(1, 2, 3, 4, 5, 6, 7, 8, -9)) ==
          "  1    2    3\n  4    5    6\n  7    8   -9");
}
#endif
