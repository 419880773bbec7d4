/* Prints what a PNG file has at given places, "RED GREEN BLUE" a line: pixel FILE [COLUMN ROW]...
 * Or says where two differ, and fails if that is more than a processor's rounding: pixel FILE FILE
 */
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#include <stb_image.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

struct Picture {
    int width = 0, height = 0, channels = 0;
    std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> rgb;

    explicit Picture(const char *path)
        : rgb(stbi_load(path, &width, &height, &channels, 3), stbi_image_free)
    {
        if (rgb == nullptr) {
            std::printf("%s is no PNG file\n", path);
            std::exit(1);
        }
    }
};

static int compare(const Picture &a, const Picture &b)
{
    if (a.width != b.width || a.height != b.height) {
        std::printf("%d by %d, not %d by %d\n", a.width, a.height, b.width, b.height);
        return 1;
    }
    int count = 0, last = 0;
    for (int i = 0; i < 3 * a.width * a.height; ++i) {
        if (std::abs(a.rgb.get()[i] - b.rgb.get()[i]) > 2) {
            ++count;
            last = i / 3;
        }
    }
    std::printf("%d bytes differ, the last at %d %d\n", count, last % a.width, last / a.width);
    return count > 20;
}

int main(int argc, char **argv)
{
    if (argc < 2) {
        return 2;
    }
    const Picture picture(argv[1]);
    if (argc == 3) {
        return compare(picture, Picture(argv[2]));
    }
    for (int i = 2; i + 1 < argc; i += 2) {
        const int column = std::atoi(argv[i]), row = std::atoi(argv[i + 1]);
        if (column < 0 || column >= picture.width || row < 0 || row >= picture.height) {
            std::printf("the picture has %d by %d\n", picture.width, picture.height);
            return 1;
        }
        const stbi_uc *pixel = picture.rgb.get() + 3 * (row * picture.width + column);
        std::printf("%d %d %d\n", pixel[0], pixel[1], pixel[2]);
    }
    return 0;
}
