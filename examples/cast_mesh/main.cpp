/*
 * cast_mesh: draws a placed mesh by casting rays at it, with a light and its shadows, and reports
 * what a pixel shows.
 *
 * A host of kxmaths5: the geometry is the library's. What is left to it are colours, and the cosine
 * between two unit vectors.
 */
#include "command_line.h"
#include "hierarchy.h"
#include "render.h"
#include "report.h"
#include "scene.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>

namespace
{

using namespace example;

struct Options : PlacedMeshOptions {
    CameraOptions camera;
    Light light;
    std::optional<float> crease; /**< For smooth shading, in radians. */
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
        ->type_name("NUMBER")
        ->default_str(text_of("%.3g", in_degrees(static_cast<double>(radians))));
}

std::optional<Options> read_options(int argc, char **argv)
{
    Options options;
    CameraOptions &camera = options.camera;
    CommandLine line("Draws a mesh by casting rays at it, and reports what a pixel shows.",
                     "  cast_mesh part.stl --up z --from mm --to mm --smooth 30 -o part.png\n"
                     "  cast_mesh house.obj --azimuth 120 --elevation 10 --pick 640 360");
    add_angle(line, "--azimuth", camera.azimuth,
              "direction from the mesh to the eye, from +Z towards +X");
    add_angle(line, "--elevation", camera.elevation, "how high the eye is above the mesh");
    add_angle(line, "--field-of-view", camera.field_of_view,
              "from the left of the picture to its right, 0.1 to 170");
    const auto lengths = {
        std::tuple(
            "--distance", &camera.distance,
            "from the eye to the mesh's middle, in the unit of --to; 0 shows the whole mesh"),
        std::tuple("--eye-offset", &camera.eye_offset,
                   "shifts the eye to the right, in the unit of --to, for one picture of a stereo "
                   "pair")};
    for (const auto &[name, value, help] : lengths) {
        line.app.add_option(name, *value, help)->type_name("NUMBER")->capture_default_str();
    }
    add_angle(line, "--light-azimuth", options.light.azimuth,
              "direction from the mesh to the light");
    add_angle(line, "--light-elevation", options.light.elevation, "how high the light is");
    float crease = 0.0f;
    const CLI::Option *smooth =
        line.app
            .add_option("--smooth", crease,
                        "shade smoothly, except where triangles meet at more than this angle, in "
                        "degrees; normals in the file are used as they are")
            ->type_name("NUMBER")
            ->check(CLI::Range(0.0f, 180.0f));
    const auto sizes = {std::pair("--width", &camera.width), std::pair("--height", &camera.height)};
    for (const auto &[name, value] : sizes) {
        line.app.add_option(name, *value, "of the picture, in pixels")
            ->type_name("NUMBER")
            ->check(CLI::Range(1, 16384))
            ->capture_default_str();
    }
    std::array<int, 2> pixel = {};
    const CLI::Option *pick =
        line.app
            .add_option("--pick", pixel,
                        "report what the pixel in this column and row shows, counted from 0 at "
                        "the upper left")
            ->type_name("COLUMN ROW")
            ->type_size(2);
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
    const double field_of_view = in_degrees(static_cast<double>(camera.field_of_view));
    if (!(field_of_view >= 0.1 && field_of_view <= 170.0)) {
        throw Failure("--field-of-view takes 0.1 to 170 degrees");
    }
    if (camera.distance < 0.0f) {
        throw Failure("--distance can't be negative");
    }
    if (smooth->count() > 0) {
        options.crease = crease * radians_per_degree;
    }
    if (pick->count() > 0) {
        if (pixel[0] < 0 || pixel[0] >= camera.width || pixel[1] < 0 || pixel[1] >= camera.height) {
            throw Failure(text_of("--pick takes a pixel of the picture, which is %d by %d",
                                  camera.width, camera.height));
        }
        options.pick = pixel;
    }
    return options;
}

/** A place in the scene, in the world. */
KXP3 in_world(const Scene &scene, const KXP3 &point)
{
    const KXV3 step = scene.from_middle(point);
    KXP3 place;
    KXV3Combine(&scene.middle, &step, &place, 1.0f, 1.0f);
    return place;
}

std::vector<ReportLine> report(const Scene &scene, const Camera &camera, const std::string &unit)
{
    std::vector<ReportLine> lines = {
        {"mesh", scene.name + ": " + count_of(scene.mesh_triangles, "triangle")},
        {"enlarged", text_of("%g times for the casting, to a diagonal of %.4g: the library's "
                             "tolerances are absolute",
                             scene.scale, scene.diagonal)},
        {"eye", text_of(in_world(scene, camera.eye)) + unit +
                    text_of(", %.6g", camera.distance / scene.scale) + unit +
                    " from the mesh's middle"}};
    if (scene.unseen_triangles > 0) {
        lines.push_back({"not seen", count_of(scene.unseen_triangles, "triangle") +
                                         ", too small or too flat to be hit"});
    }
    return lines;
}

/** What the middle of a pixel shows. */
std::vector<ReportLine> picked(const Scene &scene, const Hierarchy &hierarchy, const Camera &camera,
                               const std::array<int, 2> &pixel, const std::string &unit)
{
    const auto hit = hierarchy.nearest(camera.ray_through(pixel[0] + 0.5, pixel[1] + 0.5));
    const std::string title = text_of("pixel %d %d", pixel[0], pixel[1]);
    if (!hit) {
        return {{title, "nothing"}};
    }
    // About the mesh's middle, not the world's origin, from which both may be far away.
    const KXP3 eye = scene.from_middle(camera.eye), point = scene.from_middle(hit->point);
    float range, elevation, azimuth;
    KXPointsToREA(&eye, &point, &range, &elevation, &azimuth);
    const double bearing = KXBearing(&point, &eye);
    return {{title, scene.is_floor(hit->triangle) ? std::string("the floor")
                                                  : "triangle " + std::to_string(hit->triangle)},
            {"point", text_of(in_world(scene, hit->point)) + unit},
            {"from the eye", text_of("range %.6g%s, bearing %.5g, elevation %.5g degrees",
                                     static_cast<double>(range), unit.c_str(), in_degrees(bearing),
                                     in_degrees(static_cast<double>(elevation)))}};
}

/** Normals for the corners of the scene's triangles, which need not begin where the mesh's do. */
std::vector<CornerNormals> normals_for(const Scene &scene, const Mesh &mesh, float crease)
{
    std::vector<CornerNormals> normals = smooth_normals(mesh, crease);
    for (std::size_t i = 0; i < normals.size(); ++i) {
        const std::uint32_t first = scene.triangles[i].corner[0].vertex;
        const auto &corners = mesh.triangles[i];
        const auto begin = std::find(corners.begin(), corners.end(), first) - corners.begin();
        std::rotate(normals[i].begin(), normals[i].begin() + begin, normals[i].end());
    }
    return normals;
}

void run(int argc, char **argv)
{
    const auto options = read_options(argc, argv);
    if (!options) {
        return;
    }
    const std::string unit = options->symbol.empty() ? "" : " " + options->symbol;

    const Mesh mesh = mesh_for(*options);
    const Scene scene(mesh, *options);
    const Camera camera(scene, options->camera);
    const Hierarchy hierarchy = scene.hierarchy(camera.distance);
    std::vector<ReportLine> lines = report(scene, camera, unit);
    if (options->pick) {
        for (const ReportLine &line : picked(scene, hierarchy, camera, *options->pick, unit)) {
            lines.push_back(line);
        }
    }
    std::vector<CornerNormals> normals;
    if (options->crease) {
        normals = normals_for(scene, mesh, *options->crease);
    }
    const Picture picture = render(scene, hierarchy, camera, normals, options->light,
                                   options->camera.width, options->camera.height);
    write_png(options->picture, picture);
    lines.push_back(line_for(options->picture, picture));
    print(lines);
}

} // namespace

int main(int argc, char **argv)
{
    return example::run_example("cast_mesh", argc, argv, run);
}
