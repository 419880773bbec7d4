/* Reading of OBJ files. */
#include "failure.h"
#include "mesh.h"

#define TINYOBJLOADER_IMPLEMENTATION
#include <tiny_obj_loader.h>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string_view>

namespace example
{

namespace
{

std::string read_whole(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Failure("cannot open " + path + ": " + std::strerror(errno));
    }
    std::ostringstream text;
    text << file.rdbuf();
    if (text.bad() || std::filesystem::is_directory(path)) {
        throw Failure("cannot read " + path);
    }
    if (text.str().empty()) {
        throw Failure(path + " is empty");
    }
    return text.str();
}

/** The words of one line, without what follows a '#'. */
class Words
{
public:
    explicit Words(std::string_view line) : rest(line.substr(0, line.find('#'))) {}

    /** The next word; empty at the end. */
    std::string_view next()
    {
        constexpr std::string_view blanks = " \t\r";
        const std::size_t begin = std::min(rest.find_first_not_of(blanks), rest.size());
        const std::size_t end = std::min(rest.find_first_of(blanks, begin), rest.size());
        const std::string_view word = rest.substr(begin, end - begin);
        rest.remove_prefix(end);
        return word;
    }

private:
    std::string_view rest;
};

bool is_finite_single(std::string_view word)
{
    if (!word.empty() && word.front() == '+') {
        word.remove_prefix(1);
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(word.begin(), word.end(), value);
    return error == std::errc() && end == word.end() &&
           std::fabs(value) <= static_cast<double>(std::numeric_limits<float>::max());
}

/**
 * The loader reads a coordinate that is missing or is no number as 0, and drops a face with fewer
 * than three corners. A person wants to know: a truncated file would lose a part of its shape.
 */
void check_lines(const std::string &path, const std::string &text)
{
    const std::string_view all = text;
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < all.size(); ++number) {
        const std::size_t end = std::min(all.find('\n', begin), all.size());
        Words words(all.substr(begin, end - begin));
        const std::string_view keyword = words.next();
        for (int i = 0; i < 3 && (keyword == "v" || keyword == "f"); ++i) {
            const std::string_view word = words.next();
            const std::string where = path + ", line " + std::to_string(number + 1) + ": ";
            if (keyword == "v" && !is_finite_single(word)) {
                throw Failure(where + "a vertex needs three finite numbers");
            }
            if (keyword == "f" && word.empty()) {
                throw Failure(where + "a face needs three corners");
            }
        }
        begin = end + 1;
    }
}

tinyobj::ObjReader parse(const std::string &path, const std::string &text, bool triangulate)
{
    tinyobj::ObjReaderConfig config;
    config.triangulate = triangulate;
    config.vertex_color = false;
    tinyobj::ObjReader reader;
    if (!reader.ParseFromString(text, "", config)) {
        const std::string error = reader.Error();
        throw Failure(path + " is not a valid OBJ file: " + error.substr(0, error.find('\n')));
    }
    return reader;
}

void check_indices(const std::string &path, const tinyobj::ObjReader &reader)
{
    const std::size_t points = reader.GetAttrib().vertices.size() / 3;
    for (const tinyobj::shape_t &shape : reader.GetShapes()) {
        for (const tinyobj::index_t &index : shape.mesh.indices) {
            // A negative index, were there one, becomes a very large one here.
            if (static_cast<std::size_t>(index.vertex_index) >= points) {
                throw Failure(path + " has a face that points outside its " +
                              std::to_string(points) + " vertices");
            }
        }
    }
}

bool has_only_triangles(const tinyobj::ObjReader &reader)
{
    for (const tinyobj::shape_t &shape : reader.GetShapes()) {
        if (shape.mesh.indices.size() != 3 * shape.mesh.num_face_vertices.size()) {
            return false;
        }
    }
    return true;
}

Mesh mesh_from(const std::string &path, const tinyobj::ObjReader &reader)
{
    Mesh mesh;
    mesh.name = path;
    const std::vector<float> &floats = reader.GetAttrib().vertices;
    for (std::size_t i = 0; i + 2 < floats.size(); i += 3) {
        mesh.points.push_back({floats[i], floats[i + 1], floats[i + 2]});
    }
    for (const tinyobj::shape_t &shape : reader.GetShapes()) {
        const auto &indices = shape.mesh.indices;
        const auto vertex = [&indices](std::size_t i) {
            return static_cast<std::uint32_t>(indices[i].vertex_index);
        };
        for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
            mesh.triangles.push_back({vertex(i), vertex(i + 1), vertex(i + 2)});
        }
    }
    return mesh;
}

} // namespace

Mesh read_obj(const std::string &path)
{
    const std::string text = read_whole(path);
    check_lines(path, text);
    // Polygons are split only once all indices are known to be good: the splitting reads vertices.
    tinyobj::ObjReader reader = parse(path, text, false);
    check_indices(path, reader);
    if (!has_only_triangles(reader)) {
        reader = parse(path, text, true);
    }
    Mesh mesh = mesh_from(path, reader);
    if (mesh.triangles.empty()) {
        throw Failure(path + " has no faces");
    }
    return mesh;
}

} // namespace example
