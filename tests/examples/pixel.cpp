/* Prints what a PNG file has at given places, "RED GREEN BLUE" a line: pixel FILE [COLUMN ROW]...
 */
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#include <stb_image.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    int width = 0, height = 0, channels = 0;
    unsigned char *bytes = argc > 1 ? stbi_load(argv[1], &width, &height, &channels, 3) : nullptr;
    if (bytes == nullptr) {
        std::fprintf(stderr, "pixel: no PNG file\n");
        return 1;
    }
    for (int i = 2; i + 1 < argc; i += 2) {
        const int column = std::atoi(argv[i]), row = std::atoi(argv[i + 1]);
        if (column < 0 || column >= width || row < 0 || row >= height) {
            std::fprintf(stderr, "pixel: the picture has %d by %d\n", width, height);
            return 1;
        }
        const unsigned char *pixel = bytes + 3 * (row * width + column);
        std::printf("%d %d %d\n", pixel[0], pixel[1], pixel[2]);
    }
    stbi_image_free(bytes);
    return 0;
}
