/* Writing of PNG files. */
#ifndef EXAMPLES_PNG_FILE_H
#define EXAMPLES_PNG_FILE_H

#include <string>
#include <vector>

namespace example
{

/** A picture: three bytes a pixel (red, green, blue), row by row from the top. */
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgb;
};

/**
 * Writes a picture whole or not at all: a file that stood there before is replaced only by a
 * complete new one, and something that is no ordinary file is left alone. Throws Failure.
 */
void write_png(const std::string &path, const Picture &picture);

} // namespace example

#endif
