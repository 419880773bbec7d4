/*
 * cast_mesh: draws a placed mesh by casting rays at it, with a light and its shadows, and tells
 * what stands behind a pixel.
 *
 * A host of kxmaths5: the geometry is the library's. What is left to it are colours, and the cosine
 * between two unit vectors.
 */
#include "camera.h"
#include "failure.h"
#include "hierarchy.h"
#include "names.h"
#include "render.h"
#include "report.h"

#include <cmath>
#include <optional>

namespace
{

using namespace example;

struct Options : PlacedMeshOptions {
    CameraOptions camera;
    Light light;
    std::string picture;
    std::optional<std::array<int, 2>> pick; /**< Column and row. */
};

/** An angle that is given in degrees and kept in radians. */
void add_angle(CommandLine &line, const std::string &name, float &radians, const std::string &help)
{
    line.app
        .add_option_function<float>(
            name, [&radians](float degrees) { radians = degrees * radians_per_degree; },
            help + ", in degrees")
        ->type_name("NUMBER");
}

std::optional<Options> read_options(int argc, char **argv)
{
    Options options;
    CameraOptions &camera = options.camera;
    CommandLine line("Draws a mesh by casting rays at it, and tells what stands behind a pixel.");
    add_angle(line, "--azimuth", camera.azimuth,
              "where the eye is as seen from the mesh, from +Z towards +X");
    add_angle(line, "--elevation", camera.elevation, "how high the eye is as seen from the mesh");
    add_angle(line, "--field-of-view", camera.field_of_view, "from the left side to the right");
    line.app.add_option("--distance", camera.distance, "from the eye to the mesh's middle");
    line.app.add_option("--eye-offset", camera.eye_offset,
                        "how far the eye stands to the right, for one of a pair of pictures");
    add_angle(line, "--light-azimuth", options.light.azimuth, "where the light comes from");
    add_angle(line, "--light-elevation", options.light.elevation, "how high the light stands");
    line.app.add_option("--width", camera.width, "of the picture")->check(CLI::Range(1, 16384));
    line.app.add_option("--height", camera.height, "of the picture")->check(CLI::Range(1, 16384));
    std::array<int, 2> pixel = {};
    const CLI::Option *pick =
        line.app.add_option("--pick", pixel, "tell what stands behind this column and row");
    line.add_picture(options.picture, "cast_mesh.png");
    if (!line.parse(argc, argv, options)) {
        return std::nullopt;
    }
    for (const float value : {camera.azimuth, camera.elevation, camera.distance, camera.eye_offset,
                              options.light.azimuth, options.light.elevation}) {
        if (!std::isfinite(value)) {
            throw Failure("the options take finite numbers only");
        }
    }
    if (!(camera.field_of_view > 0.001f && camera.field_of_view < 3.0f)) {
        throw Failure("--field-of-view takes 0.1 to 170 degrees");
    }
    if (camera.distance < 0.0f) {
        throw Failure("--distance takes a positive number");
    }
    if (pick->count() > 0) {
        if (pixel[0] < 0 || pixel[0] >= camera.width || pixel[1] < 0 || pixel[1] >= camera.height) {
            throw Failure(text_of("--pick takes a pixel of the picture, which has %d by %d",
                                  camera.width, camera.height));
        }
        options.pick = pixel;
    }
    return options;
}

std::vector<ReportLine> told_of(const Scene &scene, const Camera &camera, const std::string &unit)
{
    std::vector<ReportLine> lines = {
        {"mesh", scene.name + ": " + with_commas(scene.mesh_triangles) + " triangles"},
        {"scale", text_of("%g, about the mesh's middle", static_cast<double>(scene.scale))},
        {"eye", text_of(camera.eye_in_world) + unit + text_of(", %.6g", camera.distance) + unit +
                    " from the mesh's middle"}};
    if (scene.unseen_triangles > 0) {
        lines.push_back({"not seen", with_commas(scene.unseen_triangles) +
                                         " of the triangles, too small or too flat to be hit"});
    }
    return lines;
}

/** What stands behind the middle of a pixel. */
std::vector<ReportLine> picked(const Scene &scene, const Hierarchy &hierarchy, const Camera &camera,
                               const std::array<int, 2> &pixel, const std::string &unit)
{
    const auto hit = hierarchy.nearest(camera.ray_through(pixel[0] + 0.5, pixel[1] + 0.5));
    const std::string title = text_of("pixel %d %d", pixel[0], pixel[1]);
    if (!hit) {
        return {{title, "nothing"}};
    }
    KXP3 point;
    KXM4P3I1(&scene.to_world, &hit->point, &point);
    float range, elevation, azimuth;
    KXPointsToREA(&camera.eye_in_world, &point, &range, &elevation, &azimuth);
    const double bearing = KXBearing(&point, &camera.eye_in_world);
    return {{title, scene.is_floor(hit->triangle) ? std::string("the floor")
                                                  : "triangle " + std::to_string(hit->triangle)},
            {"point", text_of(point) + unit},
            {"from the eye", text_of("range %.6g%s, bearing %.5g, elevation %.5g degrees",
                                     static_cast<double>(range), unit.c_str(), in_degrees(bearing),
                                     in_degrees(static_cast<double>(elevation)))}};
}

void run(int argc, char **argv)
{
    const auto options = read_options(argc, argv);
    if (!options) {
        return;
    }
    const std::string symbol = unit_symbol(options->to);
    const std::string unit = symbol.empty() ? "" : " " + symbol;

    const Scene scene(mesh_named(options->mesh), *options);
    const Camera camera(scene, options->camera);
    const Hierarchy hierarchy = scene.hierarchy(camera.distance);
    std::vector<ReportLine> lines = told_of(scene, camera, unit);
    if (options->pick) {
        for (const ReportLine &line : picked(scene, hierarchy, camera, *options->pick, unit)) {
            lines.push_back(line);
        }
    }
    const Picture picture = render(scene, hierarchy, camera, options->light, options->camera.width,
                                   options->camera.height);
    write_png(options->picture, picture);
    lines.push_back(line_for(options->picture, picture));
    print(lines);
}

} // namespace

int main(int argc, char **argv)
{
    return example::run_example("cast_mesh", argc, argv, run);
}
