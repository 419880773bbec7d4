/* Meshes from files of Debian's packages, as a host of kxmaths5 keeps them. */
#ifndef KX_MESHES_MESH_H
#define KX_MESHES_MESH_H

#include <kxmaths5.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace meshes
{

struct Mesh {
    std::string name;
    std::vector<KXP3> points; /**< No two of them equal. */
    std::vector<std::array<std::uint32_t, 3>> triangles;
};

/** The meshes that are measured. Throws std::runtime_error. */
std::vector<Mesh> all_meshes();

/** The mesh scaled to a diagonal, with its middle moved to a point. */
Mesh placed(Mesh mesh, double diagonal, const KXP3 &middle = {0, 0, 0});

} // namespace meshes

#endif
