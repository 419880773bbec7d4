#include "png_file.h"

#include "report.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb_image_write.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace example
{

namespace
{

namespace fs = std::filesystem;

std::vector<unsigned char> encoded(const Picture &picture)
{
    std::vector<unsigned char> bytes;
    const auto append = [](void *context, void *data, int size) {
        auto *all = static_cast<std::vector<unsigned char> *>(context);
        const auto *begin = static_cast<const unsigned char *>(data);
        all->insert(all->end(), begin, begin + size);
    };
    if (stbi_write_png_to_func(append, &bytes, picture.width, picture.height, 3, picture.rgb.data(),
                               3 * picture.width) == 0) {
        throw Failure("the picture cannot be encoded");
    }
    return bytes;
}

/** Writes a new file, or leaves none. */
void write_new(const std::string &path, const std::vector<unsigned char> &bytes)
{
    // x: never write over a file that is there.
    std::FILE *file = std::fopen(path.c_str(), "wbx");
    if (file == nullptr) {
        throw Failure(std::strerror(errno));
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const std::string reason = std::strerror(errno);
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) {
        std::remove(path.c_str());
        throw Failure(written ? std::strerror(errno) : reason);
    }
}

void replace(const fs::path &target, const std::vector<unsigned char> &bytes)
{
    std::error_code error;
    if (fs::exists(target, error) && !fs::is_regular_file(target, error)) {
        throw Failure("it is there and is not an ordinary file");
    }
    const std::string part = target.string() + "." + std::to_string(getpid()) + ".part";
    write_new(part, bytes);
    fs::rename(part, target, error);
    if (error) {
        std::remove(part.c_str());
        throw Failure(error.message());
    }
}

} // namespace

void write_png(const std::string &path, const Picture &picture)
{
    const std::vector<unsigned char> bytes = encoded(picture);
    try {
        // Through a link, the file that it leads to is the one to replace.
        std::error_code no_link;
        const bool is_link = fs::is_symlink(path, no_link);
        replace(is_link ? fs::canonical(path) : fs::path(path), bytes);
    } catch (const fs::filesystem_error &error) {
        throw Failure("cannot write " + path + ": " + error.code().message());
    } catch (const Failure &failure) {
        throw Failure("cannot write " + path + ": " + failure.what());
    }
}

} // namespace example
