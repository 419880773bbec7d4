#include "support/check.h"

using namespace test;

TEST_CASE("Every elementary transform fills the whole record")
{
    struct Row { const char *label; void (*fill)(KXM4 *); KXM4 wanted; };
    const Row rows[] = {
        {"scale", [](KXM4 *m) {KXM4Scale(2, 3, 4, m); }, {{{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 4, 0}, {0, 0, 0, 1}}}},
        {"translate", [](KXM4 *m) {KXM4Translate(2, 3, 4, m); }, {{{1, 0, 0, 2}, {0, 1, 0, 3}, {0, 0, 1, 4}, {0, 0, 0, 1}}}},
        {"rotate about X", [](KXM4 *m) {KXM4RotateX2(0.6f, 0.8f, m); },
         {{{1, 0, 0, 0}, {0, 0.6f, -0.8f, 0}, {0, 0.8f, 0.6f, 0}, {0, 0, 0, 1}}}},
        {"rotate about Y", [](KXM4 *m) {KXM4RotateY2(0.6f, 0.8f, m); },
         {{{0.6f, 0, 0.8f, 0}, {0, 1, 0, 0}, {-0.8f, 0, 0.6f, 0}, {0, 0, 0, 1}}}},
        {"rotate about Z", [](KXM4 *m) {KXM4RotateZ2(0.6f, 0.8f, m); },
         {{{0.6f, -0.8f, 0, 0}, {0.8f, 0.6f, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}},
        {"a sine of 0 about X", [](KXM4 *m) {KXM4RotateX2(1, 0, m); },
         {{{1, 0, 0, 0}, {0, 1, -0.0f, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}},
        {"a sine of 0 about Y", [](KXM4 *m) {KXM4RotateY2(1, 0, m); },
         {{{1, 0, 0, 0}, {0, 1, 0, 0}, {-0.0f, 0, 1, 0}, {0, 0, 0, 1}}}},
        {"a sine of 0 about Z", [](KXM4 *m) {KXM4RotateZ2(1, 0, m); },
         {{{1, -0.0f, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}},
        {"shear x along y", [](KXM4 *m) {KXM4ShearXY2(0.5f, m); }, {{{1, 0.5f, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}},
        {"shear x along z", [](KXM4 *m) {KXM4ShearXZ2(0.5f, m); }, {{{1, 0, 0.5f, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}},
        {"shear y along z", [](KXM4 *m) {KXM4ShearYZ2(0.5f, m); }, {{{1, 0, 0, 0}, {0, 1, 0.5f, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}},
    };
    for (const Row &row : rows) {
        Guarded<KXM4> out;
        row.fill(&out.record);
        out.check(row.label, row.wanted);
    }
}

TEST_CASE("The same in the plane")
{
    struct Row { const char *label; void (*fill)(KXM3 *); KXM3 wanted; };
    const Row rows[] = {
        {"scale", [](KXM3 *m) {KXM3Scale(2, 3, m); }, {{{2, 0, 0}, {0, 3, 0}, {0, 0, 1}}}},
        {"translate", [](KXM3 *m) {KXM3Translate(2, 3, m); }, {{{1, 0, 2}, {0, 1, 3}, {0, 0, 1}}}},
        {"rotate", [](KXM3 *m) {KXM3Rotate2(0.6f, 0.8f, m); }, {{{0.6f, -0.8f, 0}, {0.8f, 0.6f, 0}, {0, 0, 1}}}},
        {"a sine of 0", [](KXM3 *m) {KXM3Rotate2(1, 0, m); }, {{{1, -0.0f, 0}, {0, 1, 0}, {0, 0, 1}}}},
    };
    for (const Row &row : rows) {
        Guarded<KXM3> out;
        row.fill(&out.record);
        out.check(row.label, row.wanted);
    }
}
