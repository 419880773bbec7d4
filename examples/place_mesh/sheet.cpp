#include "sheet.h"

#include "pen.h"
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
constexpr Colour placed_box_ink = {0.88, 0.45, 0.10};
constexpr Colour tight_box_ink = {0.15, 0.42, 0.75};
constexpr std::array<Colour, 3> axis_ink = {
    {{0.80, 0.16, 0.18}, {0.13, 0.58, 0.24}, {0.12, 0.38, 0.84}}};
constexpr std::array<const char *, 3> axis_name = {"X", "Y", "Z"};

/** One way of looking: the rotation that turns +X right, +Y up and +Z at the viewer. */
struct View {
    const char *title;
    kxm::mat4 rotation;
    Rectangle panel;

    /** Where the view is drawn within its panel; the rest is for labels. */
    Rectangle plot() const
    {
        return {panel.x + 92, panel.y + 40, panel.width - 92 - 20, panel.height - 40 - 54};
    }
};

std::array<View, 3> three_views()
{
    const double width = (sheet_width - 3 * margin) / 2, height = (sheet_height - 3 * margin) / 2;
    const double right = 2 * margin + width, below = 2 * margin + height;
    return {
        {{"From above", kxm::mat4::rotation_x(kxm::radians(90)), {margin, margin, width, height}},
         {"From the front", kxm::mat4(), {margin, below, width, height}},
         {"From the right",
          kxm::mat4::rotation_y(kxm::radians(-90)),
          {right, below, width, height}}}};
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
    std::snprintf(text, sizeof text, "%.6g", value + 0.0); // -0 would be shown as such
    return text;
}

/** What the views show of a placement, all at one scale. */
struct Scene {
    const Placement &placement;
    std::vector<KXV3> normals;
    double scale; /**< Pixels of the sheet for one length unit. */
};

Scene scene_of(const Placement &placement)
{
    kxm::box whole = placement.placed_box_here;
    whole.include(placement.tight_box_here);
    const kxm::vec3 extent = whole.diagonal();
    const Rectangle plot = three_views()[0].plot();
    const double across = std::max(extent.x, extent.z), up = std::max(extent.y, extent.z);
    double scale = 0.9 * std::min(plot.width / across, plot.height / up);
    if (!(scale > 1e-30 && scale < 1e30)) {
        scale = 1.0; // a mesh without extent is one dot at any scale
    }
    return {placement, triangle_normals(placement.mesh), scale};
}

/** From about the mid-point to a view's columns, rows and nearness, magnified and from its corner.
 */
kxm::mat4 pixel_matrix(const View &view, const Scene &scene, double magnification, double x,
                       double y)
{
    const auto zoom = static_cast<float>(scene.scale * magnification);
    const Rectangle plot = view.plot();
    const kxm::vec3 to_centre = {static_cast<float>((plot.x + plot.width / 2 - x) * magnification),
                                 static_cast<float>((plot.y + plot.height / 2 - y) * magnification),
                                 0.0f};
    return kxm::mat4::translation(to_centre) *
           (kxm::mat4::scale(zoom, -zoom, zoom) * view.rotation);
}

/** Where an axis's labels count from: the origin or, where so many digits would be needed that all
 * labels look alike, the mesh's mid-point. */
double label_base(double middle, double step)
{
    return std::fabs(middle) > 1e5 * step ? middle : 0.0;
}

/** Lines at round coordinates, with the numbers next to them; the one at 0 in its axis's colour. */
void draw_grid(Pen &pen, const View &view, const Scene &scene, double step)
{
    const Rectangle plot = view.plot();
    for (const int row : {0, 1}) {
        const bool across = row == 0;
        const ScreenAxis screen = screen_axis(view, row);
        const Colour &zero_line = axis_ink[screen_axis(view, 1 - row).axis];
        const double middle = scene.placement.mid_point[screen.axis];
        const double base = label_base(middle, step);
        const double half = (across ? plot.width : plot.height) / 2;
        const double reach = half / scene.scale;
        const double last = std::floor((middle - base + reach) / step);
        for (double k = std::ceil((middle - base - reach) / step); k <= last; k += 1.0) {
            const double offset = (k * step - (middle - base)) * scene.scale * screen.sign;
            const bool is_zero = k == 0.0 && base == 0.0;
            const Colour &c = is_zero ? zero_line : grid;
            const double width = is_zero ? 1.6 : 1.0;
            if (across) {
                const double x = plot.x + half + offset;
                pen.line(x, plot.y, x, plot.y + plot.height, c, width);
                pen.text(x, plot.y + plot.height + 18, number(k * step), 12, faint_ink, 0.5);
            } else {
                const double y = plot.y + half - offset;
                pen.line(plot.x, y, plot.x + plot.width, y, c, width);
                pen.text(plot.x - 8, y + 4, number(k * step), 12, faint_ink, 1.0);
            }
        }
    }
}

/** An arrow from a point on. */
void draw_arrow(Pen &pen, double x0, double y0, double right, double up, const Colour &c)
{
    constexpr double length = 30.0;
    const double x = x0 + right * length, y = y0 - up * length;
    pen.line(x0, y0, x, y, c, 2.5);
    for (const double side : {-1.0, 1.0}) {
        pen.line(x, y, x - 8 * right + 4 * side * up, y + 8 * up + 4 * side * right, c, 2.5);
    }
}

/** Which axis runs across and up a view and which way, below and left of the plot. */
void draw_axes(Pen &pen, const View &view, const Scene &scene, double step)
{
    const Rectangle plot = view.plot();
    for (const int row : {0, 1}) {
        const ScreenAxis screen = screen_axis(view, row);
        const Colour &c = axis_ink[screen.axis];
        const double base = label_base(scene.placement.mid_point[screen.axis], step);
        const std::string from = base == 0.0 ? "" : " from " + number(base);
        if (row == 0) {
            const double x = plot.x + plot.width / 2, y = plot.y + plot.height + 42;
            pen.text(x, y, axis_name[screen.axis], 14, c, 0.5, true);
            draw_arrow(pen, x + screen.sign * 16, y - 5, screen.sign, 0.0, c);
            pen.text(plot.x + plot.width, y, from.empty() ? "" : axis_name[screen.axis] + from, 12,
                     faint_ink, 1.0);
        } else {
            const double x = view.panel.x + 20, y = plot.y + plot.height / 2;
            pen.text(x, y, axis_name[screen.axis], 14, c, 0.5, true);
            draw_arrow(pen, x, y - 5 - screen.sign * 14, 0.0, screen.sign, c);
            pen.text(view.panel.x + 16, plot.y + plot.height + 42,
                     from.empty() ? "" : axis_name[screen.axis] + from, 12, faint_ink);
        }
    }
}

/** Above the plot, where neither mesh nor boxes are. */
void draw_scale_bar(Pen &pen, const View &view, const Scene &scene, double step,
                    const std::string &unit)
{
    const Rectangle plot = view.plot();
    const double x1 = plot.x + plot.width, x0 = x1 - step * scene.scale;
    const double y = view.panel.y + 22;
    pen.line(x0, y, x1, y, ink, 3.0);
    pen.line(x0, y - 6, x0, y + 6, ink, 2.0);
    pen.line(x1, y - 6, x1, y + 6, ink, 2.0);
    pen.text(x0 - 10, y + 5, number(step) + (unit.empty() ? "" : " " + unit), 13, ink, 1.0);
}

void draw_box(Pen &pen, const kxm::box &box, const kxm::mat4 &pixels, const Colour &c, double dash)
{
    // Carried into pixels a box is the rectangle that it shows.
    const kxm::box shown = pixels * box;
    const kxm::point3 corner = shown.minimum();
    const kxm::vec3 extent = shown.diagonal();
    pen.outline({corner.x, corner.y, extent.x, extent.y}, c, 1.6, dash);
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

    const Placement &placement = scene.placement;
    const Image shaded = shade(placement.mesh, scene.normals, view.rotation,
                               pixel_matrix(view, scene, oversampling, plot.x, plot.y),
                               static_cast<int>(plot.width) * oversampling,
                               static_cast<int>(plot.height) * oversampling, progress);
    pen.confine(plot);
    pen.image(plot.x, plot.y, 1.0 / oversampling, shaded);
    const kxm::mat4 pixels = pixel_matrix(view, scene, 1.0, 0.0, 0.0);
    draw_box(pen, placement.placed_box_here, pixels, placed_box_ink, 0.0);
    draw_box(pen, placement.tight_box_here, pixels, tight_box_ink, 6.0);
    pen.release();
    draw_axes(pen, view, scene, step);
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
        pen.fitted_text(left + 122, y, line.text, 14, ink, panel.width - 24 - 122 - 12);
    }
    y += 40;
    pen.line(left, y - 5, left + 60, y - 5, placed_box_ink, 2.0);
    pen.text(left + 72, y, "the mesh's own box, transformed to its place", 14, ink);
    y += 26;
    pen.line(left, y - 5, left + 60, y - 5, tight_box_ink, 2.0, 6.0);
    pen.text(left + 72, y, "the box around the placed points", 14, ink);
    pen.release();
}

} // namespace

Picture draw_sheet(const Placement &placement, const std::vector<ReportLine> &lines,
                   const std::string &unit)
{
    const Scene scene = scene_of(placement);
    const std::array<View, 3> views = three_views();
    Progress progress("drawing", views.size() * placement.mesh.triangles.size());
    Pen pen(sheet_width, sheet_height);
    for (const View &view : views) {
        draw_view(pen, view, scene, unit, progress);
    }
    const Rectangle &above = views[0].panel, &right = views[2].panel;
    draw_report(pen, {right.x, above.y, right.width, above.height}, lines);
    return pen.picture();
}

} // namespace example
