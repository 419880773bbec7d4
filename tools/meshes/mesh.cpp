/* Reading of meshes, by Assimp. */
#include "mesh.h"

#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <map>
#include <stdexcept>

namespace meshes
{

namespace
{

/** From the packages glmark2-data and assimp-testmodels: parts, figures, a city, vehicles, from 285
 * to 69,666 triangles, in most formats that people have. */
const char *const files[] = {
    "glmark2/models/asteroid-high.3ds",
    "glmark2/models/asteroid-low.3ds",
    "glmark2/models/bunny.obj",
    "glmark2/models/cat.3ds",
    "glmark2/models/horse.3ds",
    "assimp/models/3DS/fels.3ds",
    "assimp/models/AC/SphereWithLight.ac",
    "assimp/models/BLEND/HUMAN.blend",
    "assimp/models/BLEND/Suzanne_248.blend",
    "assimp/models/BLEND/TorusLightsCams_250_compressed.blend",
    "assimp/models/Collada/COLLADA.dae",
    "assimp/models/Collada/Cinema4D.dae",
    "assimp/models/Collada/duck.dae",
    "assimp/models/Collada/earthCylindrical.DAE",
    "assimp/models/Collada/sphere.dae",
    "assimp/models/Collada/teapots.DAE",
    "assimp/models/DXF/PinkEggFromLW.dxf",
    "assimp/models/DXF/issue_2229.dxf",
    "assimp/models/LWO/LWO2/UglyVertexColors.lwo",
    "assimp/models/MS3D/jeep1.ms3d",
    "assimp/models/OBJ/WusonOBJ.obj",
    "assimp/models/OBJ/box_longline.obj",
    "assimp/models/OBJ/regr01.obj",
    "assimp/models/OBJ/spider.obj",
    "assimp/models/STL/3DSMaxExport.STL",
    "assimp/models/STL/sphereWithHole.stl",
    "assimp/models/X/BCN_Epileptic.X",
    "assimp/models/X/anim_test.x",
    "assimp/models/X/fromtruespace_bin32.x",
    "assimp/models/glTF/CesiumMilkTruck/CesiumMilkTruck.gltf",
};

Mesh read(const std::string &path)
{
    Assimp::Importer importer;
    const aiScene *const scene = importer.ReadFile(
        path, aiProcess_Triangulate | aiProcess_PreTransformVertices | aiProcess_SortByPType);
    if (scene == nullptr) {
        throw std::runtime_error(path + " can't be read: " + importer.GetErrorString());
    }
    Mesh mesh;
    mesh.name = path.substr(path.rfind('/') + 1);
    // A file may repeat a point for each normal; triangles that share an edge are found by index.
    std::map<std::array<float, 3>, std::uint32_t> known;
    for (unsigned i = 0; i < scene->mNumMeshes; ++i) {
        const aiMesh &part = *scene->mMeshes[i];
        for (unsigned face = 0; face < part.mNumFaces; ++face) {
            if (part.mFaces[face].mNumIndices != 3) {
                continue;
            }
            std::array<std::uint32_t, 3> corners;
            for (unsigned corner = 0; corner < 3; ++corner) {
                const aiVector3D &at = part.mVertices[part.mFaces[face].mIndices[corner]];
                const auto next = static_cast<std::uint32_t>(mesh.points.size());
                const auto [place, is_new] = known.insert({{at.x, at.y, at.z}, next});
                if (is_new) {
                    mesh.points.push_back({at.x, at.y, at.z});
                }
                corners[corner] = place->second;
            }
            mesh.triangles.push_back(corners);
        }
    }
    return mesh;
}

} // namespace

std::vector<Mesh> all_meshes()
{
    std::vector<Mesh> meshes;
    for (const char *const file : files) {
        meshes.push_back(read(std::string("/usr/share/") + file));
    }
    return meshes;
}

Mesh placed(Mesh mesh, double diagonal, const KXP3 &middle)
{
    KXBox box = {mesh.points.front(), mesh.points.front()};
    for (const KXP3 &point : mesh.points) {
        KXPutPointInBox(&point, &box);
    }
    KXV3 extent;
    KXP3 own;
    KXBoxDiagonal(&box, &extent);
    KXBoxMidPoint(&box, &own);
    const double scale = diagonal / KXV3Length(&extent);
    const auto place = [scale](float at, float from, float to) {
        return static_cast<float>((double(at) - double(from)) * scale + double(to));
    };
    for (KXP3 &point : mesh.points) {
        point = {place(point.x, own.x, middle.x), place(point.y, own.y, middle.y),
                 place(point.z, own.z, middle.z)};
    }
    return mesh;
}

} // namespace meshes
