#include "sheet.h"

#include "pen.h"
#include "progress.h"
#include "shading.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace example
{

namespace
{

constexpr int sheet_width = 1600;
constexpr int sheet_height = 1200;
constexpr double margin = 20.0;
/** Pixels of the shaded picture for one of the sheet, each way: edges come out smooth. */
constexpr int oversampling = 3;

constexpr Colour paper = {1.00, 1.00, 1.00};
constexpr Colour panel_paper = {0.965, 0.97, 0.98};
constexpr Colour grid = {0.86, 0.88, 0.91};
constexpr Colour ink = {0.17, 0.20, 0.25};
constexpr Colour faint_ink = {0.45, 0.49, 0.55};
constexpr Colour carried_box_ink = {0.88, 0.45, 0.10};
constexpr Colour tight_box_ink = {0.15, 0.42, 0.75};
constexpr std::array<Colour, 3> axis_ink = {
    {{0.80, 0.16, 0.18}, {0.13, 0.58, 0.24}, {0.12, 0.38, 0.84}}};
constexpr std::array<const char *, 3> axis_name = {"X", "Y", "Z"};

/** One way of looking: the rotation that turns +X right, +Y up and +Z at the viewer. */
struct View {
    const char *title;
    KXM4 rotation;
    Rectangle panel;

    /** Where the view is drawn within its panel; the rest is for labels. */
    Rectangle plot() const
    {
        return {panel.x + 64, panel.y + 40, panel.width - 64 - 16, panel.height - 40 - 32};
    }
};

std::array<View, 3> three_views()
{
    const double width = (sheet_width - 3 * margin) / 2, height = (sheet_height - 3 * margin) / 2;
    const double right = 2 * margin + width, below = 2 * margin + height;
    constexpr float quarter_turn = 1.5707964f;
    std::array<View, 3> views = {{{"From above", {}, {margin, margin, width, height}},
                                  {"From the front", {}, {margin, below, width, height}},
                                  {"From the right", {}, {right, below, width, height}}}};
    KXM4Orientation(&views[0].rotation, nullptr, quarter_turn, 0.0f, 0.0f, KX_ORDER_XYZ);
    KXM4Unit(&views[1].rotation);
    KXM4Orientation(&views[2].rotation, nullptr, 0.0f, -quarter_turn, 0.0f, KX_ORDER_XYZ);
    return views;
}

/** The axis that runs across a view (row 0 of its rotation) or up it (row 1), and which way. */
struct ScreenAxis {
    std::size_t axis;
    double sign;
};

ScreenAxis screen_axis(const View &view, int row)
{
    const float *across = view.rotation.m[row];
    const std::size_t axis = across[0] != 0.0f ? 0 : across[1] != 0.0f ? 1 : 2;
    return {axis, static_cast<double>(across[axis])};
}

double coordinate(const KXP3 &p, std::size_t axis)
{
    return static_cast<double>(axis == 0 ? p.x : axis == 1 ? p.y : p.z);
}

/** The largest of 1, 2 and 5 times a power of ten that is not above the length. */
double round_length(double length)
{
    const double power = std::pow(10.0, std::floor(std::log10(length)));
    for (const double digit : {5.0, 2.0}) {
        if (digit * power <= length) {
            return digit * power;
        }
    }
    return power;
}

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

/** The placed mesh about its own middle: far from the origin a float has too few bits for it. */
struct Scene {
    Mesh mesh;
    std::vector<KXV3> normals;
    KXBox carried_box, tight_box;
    KXP3 centre;  /**< What was taken off every coordinate. */
    double scale; /**< Pixels of the sheet for one length unit. */
};

Scene centred(const Placement &placement)
{
    Scene scene;
    KXBox whole = placement.carried_box;
    KXCombineBoxes(&whole, &placement.tight_box);
    KXBoxMidPoint(&whole, &scene.centre);

    KXM4 to_centre;
    KXM4Translate(-scene.centre.x, -scene.centre.y, -scene.centre.z, &to_centre);
    scene.mesh = placement.mesh;
    std::vector<KXP3> &points = scene.mesh.points;
    KXM4NP3I1(&to_centre, scene.mesh.point_count(), points.data(), points.data());
    KXTransformBox(&placement.carried_box, &to_centre, &scene.carried_box);
    KXTransformBox(&placement.tight_box, &to_centre, &scene.tight_box);
    scene.normals = triangle_normals(scene.mesh);

    KXV3 extent;
    KXBoxDiagonal(&whole, &extent);
    const Rectangle plot = three_views()[0].plot();
    const double across = std::max(extent.x, extent.z), up = std::max(extent.y, extent.z);
    scene.scale = 0.84 * std::min(plot.width / across, plot.height / up);
    if (!std::isfinite(scene.scale)) {
        scene.scale = 1.0; // a mesh without extent is one dot at any scale
    }
    return scene;
}

/** From the centred space to a view's columns, rows and nearness, magnified and from its corner. */
KXM4 pixel_matrix(const View &view, const Scene &scene, double magnification, double x, double y)
{
    const auto zoom = static_cast<float>(scene.scale * magnification);
    const Rectangle plot = view.plot();
    KXM4 scale, shift, pixels;
    KXM4Scale(zoom, -zoom, zoom, &scale);
    KXM4Translate(static_cast<float>((plot.x + plot.width / 2 - x) * magnification),
                  static_cast<float>((plot.y + plot.height / 2 - y) * magnification), 0.0f, &shift);
    KXM4Mult(&scale, &view.rotation, &pixels);
    KXM4Mult(&shift, &pixels, &pixels);
    return pixels;
}

/** Lines at round coordinates, with the numbers beside them; the one at 0 in its axis's colour. */
void draw_grid(Pen &pen, const View &view, const Scene &scene, double step)
{
    const Rectangle plot = view.plot();
    for (const int row : {0, 1}) {
        const bool across = row == 0;
        const ScreenAxis screen = screen_axis(view, row);
        const Colour &zero_line = axis_ink[screen_axis(view, 1 - row).axis];
        const double middle = coordinate(scene.centre, screen.axis);
        const double half = (across ? plot.width : plot.height) / 2;
        const double reach = half / scene.scale;
        const double last = std::floor((middle + reach) / step);
        for (double k = std::ceil((middle - reach) / step); k <= last; k += 1.0) {
            const double offset = (k * step - middle) * scene.scale * screen.sign;
            const Colour &c = k == 0.0 ? zero_line : grid;
            const double width = k == 0.0 ? 1.6 : 1.0;
            if (across) {
                const double x = plot.x + half + offset;
                pen.line(x, plot.y, x, plot.y + plot.height, c, width);
                pen.text(x, plot.y + plot.height + 20, number(k * step), 12, faint_ink, 0.5);
            } else {
                const double y = plot.y + half - offset;
                pen.line(plot.x, y, plot.x + plot.width, y, c, width);
                pen.text(plot.x - 8, y + 4, number(k * step), 12, faint_ink, 1.0);
            }
        }
    }
}

/** Which way the three axes run in a view; the one that comes at the viewer is a dot. */
void draw_axes(Pen &pen, const View &view)
{
    const Rectangle plot = view.plot();
    const double x0 = plot.x + 76, y0 = plot.y + plot.height - 76;
    constexpr double length = 46.0;
    for (int axis = 0; axis < 3; ++axis) {
        const auto i = static_cast<std::size_t>(axis);
        const double right = static_cast<double>(view.rotation.m[0][axis]);
        const double up = static_cast<double>(view.rotation.m[1][axis]);
        if (right == 0.0 && up == 0.0) {
            pen.disc(x0, y0, 5.0, axis_ink[i]);
            pen.text(x0 + 8, y0 + 18, axis_name[i], 14, axis_ink[i], 0.5, true);
            continue;
        }
        const double x = x0 + right * length, y = y0 - up * length;
        pen.line(x0, y0, x, y, axis_ink[i], 2.5);
        for (const double side : {-1.0, 1.0}) {
            pen.line(x, y, x - 9 * right + 5 * side * up, y + 9 * up + 5 * side * right,
                     axis_ink[i], 2.5);
        }
        pen.text(x + 14 * right, y - 14 * up + 5, axis_name[i], 14, axis_ink[i], 0.5, true);
    }
}

void draw_scale_bar(Pen &pen, const View &view, const Scene &scene, double step,
                    const std::string &unit)
{
    const Rectangle plot = view.plot();
    const double x1 = plot.x + plot.width - 16, x0 = x1 - step * scene.scale;
    const double y = plot.y + plot.height - 16;
    pen.line(x0, y, x1, y, ink, 3.0);
    pen.line(x0, y - 6, x0, y + 6, ink, 2.0);
    pen.line(x1, y - 6, x1, y + 6, ink, 2.0);
    pen.text((x0 + x1) / 2, y - 10, number(step) + (unit.empty() ? "" : " " + unit), 13, ink, 0.5);
}

void draw_box(Pen &pen, const KXBox &box, const KXM4 &pixels, const Colour &c, double dash)
{
    // Carried into pixels a box is the rectangle that it shows.
    KXBox shown;
    KXV3 extent;
    KXTransformBox(&box, &pixels, &shown);
    KXBoxDiagonal(&shown, &extent);
    pen.outline({shown.minimum.x, shown.minimum.y, extent.x, extent.y}, c, 1.6, dash);
}

void draw_view(Pen &pen, const View &view, const Scene &scene, const std::string &unit,
               Progress &progress)
{
    const Rectangle plot = view.plot();
    const double step = round_length(std::min(plot.width, plot.height) / 4 / scene.scale);
    pen.fill(view.panel, panel_paper);
    pen.fill(plot, paper);
    pen.text(view.panel.x + 16, view.panel.y + 27, view.title, 17, ink, 0.0, true);
    draw_grid(pen, view, scene, step);

    const Image shaded = shade(scene.mesh, scene.normals, view.rotation,
                               pixel_matrix(view, scene, oversampling, plot.x, plot.y),
                               static_cast<int>(plot.width) * oversampling,
                               static_cast<int>(plot.height) * oversampling, progress);
    pen.image(plot.x, plot.y, 1.0 / oversampling, shaded);

    const KXM4 pixels = pixel_matrix(view, scene, 1.0, 0.0, 0.0);
    draw_box(pen, scene.carried_box, pixels, carried_box_ink, 0.0);
    draw_box(pen, scene.tight_box, pixels, tight_box_ink, 6.0);
    draw_axes(pen, view);
    draw_scale_bar(pen, view, scene, step, unit);
    pen.outline(plot, faint_ink, 1.0);
}

void draw_report(Pen &pen, const Rectangle &panel, const std::vector<ReportLine> &lines)
{
    pen.fill(panel, panel_paper);
    pen.confine(panel);
    const double left = panel.x + 24;
    double y = panel.y + 42;
    pen.text(left, y, "A mesh in its place", 22, ink, 0.0, true);
    y += 20;
    for (const ReportLine &line : lines) {
        y += 26;
        pen.text(left, y, line.title, 14, faint_ink);
        pen.text(left + 122, y, line.text, 14, ink);
    }
    y += 40;
    pen.line(left, y - 5, left + 60, y - 5, carried_box_ink, 2.0);
    pen.text(left + 72, y, "the mesh's own box, carried to its place", 14, ink);
    y += 26;
    pen.line(left, y - 5, left + 60, y - 5, tight_box_ink, 2.0, 6.0);
    pen.text(left + 72, y, "the box around the points in their place", 14, ink);
    pen.release();
}

} // namespace

Picture draw_sheet(const Placement &placement, const std::vector<ReportLine> &lines,
                   const std::string &unit)
{
    const Scene scene = centred(placement);
    const std::array<View, 3> views = three_views();
    Progress progress("drawing", views.size() * scene.mesh.triangles.size());
    Pen pen(sheet_width, sheet_height);
    for (const View &view : views) {
        draw_view(pen, view, scene, unit, progress);
    }
    const Rectangle &above = views[0].panel, &right = views[2].panel;
    draw_report(pen, {right.x, above.y, right.width, above.height}, lines);
    return pen.picture();
}

} // namespace example
