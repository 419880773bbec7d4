/* Reading of mesh files, by Assimp. */
#include "file_checks.h"
#include "mesh.h"
#include "report.h"

#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <unordered_map>

namespace example
{

namespace
{

/** Where Debian's glmark2-data puts it. */
constexpr const char *bunny = "/usr/share/glmark2/models/bunny.obj";

std::string read_whole(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Failure("cannot open " + path + ": " + std::strerror(errno));
    }
    if (std::filesystem::is_directory(path)) {
        throw Failure(path + " is a directory, not a mesh");
    }
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) {
        throw Failure("cannot read " + path);
    }
    if (bytes.empty()) {
        throw Failure(path + " is empty");
    }
    return bytes;
}

std::string lower_extension(const std::string &path)
{
    std::string extension = std::filesystem::path(path).extension();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

/** Puts the meshes of a scene into one, in which points in the same place are one point. */
class Joined
{
public:
    Joined(const std::string &path, bool with_normals) : keeps_normals(with_normals)
    {
        mesh.name = path;
    }

    void add(const aiMesh &part)
    {
        for (unsigned i = 0; i < part.mNumFaces; ++i) {
            const aiFace &face = part.mFaces[i];
            if (face.mNumIndices != 3) {
                continue;
            }
            std::array<std::uint32_t, 3> corners;
            CornerNormals normals = {};
            for (std::size_t k = 0; k < 3; ++k) {
                const unsigned vertex = face.mIndices[k];
                corners[k] = index_of(part.mVertices[vertex]);
                if (keeps_normals && part.HasNormals()) {
                    const aiVector3D &n = part.mNormals[vertex];
                    normals[k] = {n.x, n.y, n.z};
                }
            }
            mesh.triangles.push_back(corners);
            mesh.normals.push_back(normals);
        }
    }

    Mesh mesh;

private:
    std::uint32_t index_of(const aiVector3D &v)
    {
        if (!std::isfinite(v.x) || !std::isfinite(v.y) || !std::isfinite(v.z)) {
            throw Failure(mesh.name + " has a coordinate that is not a finite number");
        }
        const Place place = {v.x + 0.0f, v.y + 0.0f, v.z + 0.0f}; // -0 is 0 here
        const auto [found, is_new] = indices.try_emplace(place, mesh.point_count());
        if (is_new) {
            mesh.points.push_back({place[0], place[1], place[2]});
        }
        return found->second;
    }

    using Place = std::array<float, 3>;
    struct Hash {
        std::size_t operator()(const Place &place) const
        {
            const auto *bytes = reinterpret_cast<const char *>(place.data());
            return std::hash<std::string_view>()({bytes, sizeof place});
        }
    };

    bool keeps_normals;
    std::unordered_map<Place, std::uint32_t, Hash> indices;
};

} // namespace

Mesh read_mesh(const std::string &path)
{
    const std::string bytes = read_whole(path), extension = lower_extension(path);
    Assimp::Importer importer;
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE,
                                aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    constexpr unsigned steps = aiProcess_ValidateDataStructure | aiProcess_Triangulate |
                               aiProcess_SortByPType | aiProcess_PreTransformVertices;
    const aiScene *scene = nullptr;
    if (extension == ".obj") {
        const std::string text = plain_obj(path, bytes);
        scene = importer.ReadFileFromMemory(text.data(), text.size(), steps, "obj");
    } else {
        if (extension == ".ply") {
            check_ply(path, bytes);
        } else if (extension == ".stl") {
            check_stl(path, bytes);
        } else if (extension == ".off") {
            check_off(path, bytes);
        }
        scene = importer.ReadFile(path, steps);
    }
    const std::string error = importer.GetErrorString();
    if (scene == nullptr && error.find("suitable reader") != std::string::npos) {
        throw Failure(path + " is damaged, or of another kind than OBJ, STL, PLY, glTF and what "
                             "else Assimp reads");
    }
    // Assimp's words for a file that has points or lines alone, or nothing at all.
    const std::array<const char *, 4> empty = {"No meshes remaining", "No output meshes",
                                               "contains no faces", "has no faces"};
    const bool is_empty = std::any_of(empty.begin(), empty.end(), [&](const char *words) {
        return error.find(words) != std::string::npos;
    });
    if (scene == nullptr && !is_empty) {
        throw Failure(path + " cannot be read: " + error.substr(0, error.find('\n')));
    }
    // The normals of an STL file are those of its triangles.
    Joined joined(path, extension != ".stl");
    for (unsigned i = 0; scene != nullptr && i < scene->mNumMeshes; ++i) {
        joined.add(*scene->mMeshes[i]);
    }
    if (joined.mesh.triangles.empty()) {
        throw Failure(path + " has no triangles");
    }
    return std::move(joined.mesh);
}

Mesh mesh_named(const std::string &path)
{
    if (!path.empty()) {
        return read_mesh(path);
    }
    if (std::filesystem::exists(bunny)) {
        return read_mesh(bunny);
    }
    std::printf("No mesh was named and %s is not there (package glmark2-data), so this is a "
                "trefoil knot.\n",
                bunny);
    return trefoil();
}

} // namespace example
