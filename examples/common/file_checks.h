/* What a person wants to be told of a mesh file and Assimp does not: where it is wrong, and that it
 * is cut off. Assimp reads on after the end of some files, and never ends on others. */
#ifndef EXAMPLES_FILE_CHECKS_H
#define EXAMPLES_FILE_CHECKS_H

#include <string>
#include <string_view>

namespace example
{

/**
 * The vertices, normals and faces of an OBJ file, one a line and counted from 1: no byte order
 * mark, continued line, comment, texture or material, some of which Assimp stumbles over. Throws
 * Failure with the line that is wrong.
 */
std::string plain_obj(const std::string &path, std::string_view text);

/** Throws Failure where a PLY file has no header, or not all that its header names. */
void check_ply(const std::string &path, std::string_view bytes);

/** Throws Failure where an OFF file can't have as many vertices or faces as it begins with. */
void check_off(const std::string &path, std::string_view bytes);

/** Throws Failure where an STL file of either kind ends too soon. */
void check_stl(const std::string &path, std::string_view bytes);

} // namespace example

#endif
