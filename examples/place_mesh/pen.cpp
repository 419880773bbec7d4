#include "pen.h"

#include "report.h"

#include <algorithm>

namespace example
{

Pen::Pen(int width, int height)
    : surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      cairo(cairo_create(surface.get()))
{
    colour({1.0, 1.0, 1.0});
    cairo_paint(cairo.get());
}

void Pen::colour(const Colour &c)
{
    cairo_set_source_rgb(cairo.get(), c.r, c.g, c.b);
}

void Pen::fill(const Rectangle &r, const Colour &c)
{
    colour(c);
    cairo_rectangle(cairo.get(), r.x, r.y, r.width, r.height);
    cairo_fill(cairo.get());
}

void Pen::outline(const Rectangle &r, const Colour &c, double width, double dash)
{
    prepare(c, width, dash);
    cairo_rectangle(cairo.get(), r.x, r.y, r.width, r.height);
    cairo_stroke(cairo.get());
}

void Pen::line(double x0, double y0, double x1, double y1, const Colour &c, double width,
               double dash)
{
    prepare(c, width, dash);
    cairo_move_to(cairo.get(), x0, y0);
    cairo_line_to(cairo.get(), x1, y1);
    cairo_stroke(cairo.get());
}

void Pen::text(double x, double y, const std::string &words, double size, const Colour &c,
               double anchor, bool bold)
{
    const double width = select_font(words, size, bold);
    colour(c);
    cairo_move_to(cairo.get(), x - anchor * width, y);
    cairo_show_text(cairo.get(), words.c_str());
}

void Pen::fitted_text(double x, double y, std::string words, double size, const Colour &c,
                      double width)
{
    constexpr double smallest = 10.0;
    while (size > smallest && select_font(words, size, false) > width) {
        size -= 0.5;
    }
    const std::string whole = words;
    for (std::size_t begin = 1; select_font(words, size, false) > width; ++begin) {
        // Not within a character: these bytes continue one in UTF-8.
        while (begin < whole.size() &&
               (static_cast<unsigned char>(whole[begin]) & 0xc0U) == 0x80U) {
            ++begin;
        }
        words = "\u2026" + whole.substr(std::min(begin, whole.size()));
    }
    text(x, y, words, size, c);
}

double Pen::select_font(const std::string &words, double size, bool bold)
{
    cairo_select_font_face(cairo.get(), "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo.get(), size);
    cairo_text_extents_t extents;
    cairo_text_extents(cairo.get(), words.c_str(), &extents);
    return extents.x_advance;
}

void Pen::image(double x, double y, double magnification, const Image &image)
{
    // The surface only looks at the pixels; cairo has no const for that.
    auto *bytes = reinterpret_cast<unsigned char *>(const_cast<std::uint32_t *>(image.argb.data()));
    const Surface pixels(cairo_image_surface_create_for_data(
        bytes, CAIRO_FORMAT_ARGB32, image.width, image.height, 4 * image.width));
    cairo_save(cairo.get());
    cairo_translate(cairo.get(), x, y);
    cairo_scale(cairo.get(), magnification, magnification);
    cairo_set_source_surface(cairo.get(), pixels.get(), 0.0, 0.0);
    cairo_pattern_set_filter(cairo_get_source(cairo.get()), CAIRO_FILTER_GOOD);
    cairo_paint(cairo.get());
    cairo_restore(cairo.get());
}

void Pen::confine(const Rectangle &r)
{
    cairo_save(cairo.get());
    cairo_rectangle(cairo.get(), r.x, r.y, r.width, r.height);
    cairo_clip(cairo.get());
}

void Pen::release()
{
    cairo_restore(cairo.get());
}

Picture Pen::picture() const
{
    if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) {
        throw Failure(std::string("the picture cannot be drawn: ") +
                      cairo_status_to_string(cairo_status(cairo.get())));
    }
    cairo_surface_flush(surface.get());
    const unsigned char *bytes = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    Picture result = {cairo_image_surface_get_width(surface.get()),
                      cairo_image_surface_get_height(surface.get()),
                      {}};
    for (int y = 0; y < result.height; ++y) {
        const auto *row = reinterpret_cast<const std::uint32_t *>(bytes + y * stride);
        for (int x = 0; x < result.width; ++x) {
            for (const int shift : {16, 8, 0}) {
                result.rgb.push_back(static_cast<unsigned char>(row[x] >> shift & 0xff));
            }
        }
    }
    return result;
}

void Pen::prepare(const Colour &c, double width, double dash)
{
    colour(c);
    cairo_set_line_width(cairo.get(), width);
    cairo_set_dash(cairo.get(), &dash, dash > 0.0 ? 1 : 0, 0.0);
}

} // namespace example
