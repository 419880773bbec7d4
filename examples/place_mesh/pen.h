/* A sheet of paper and what draws on it. */
#ifndef PLACE_MESH_PEN_H
#define PLACE_MESH_PEN_H

#include "png_file.h"
#include "shading.h"

#include <cairo.h>

#include <memory>
#include <string>

namespace example
{

struct Colour {
    double r, g, b;
};

struct Rectangle {
    double x, y, width, height;
};

/** Draws on white paper, in pixels from the upper left. */
class Pen
{
public:
    Pen(int width, int height);

    void fill(const Rectangle &r, const Colour &c);
    void outline(const Rectangle &r, const Colour &c, double width, double dash = 0.0);
    void line(double x0, double y0, double x1, double y1, const Colour &c, double width,
              double dash = 0.0);

    /** anchor: the part of the text's width that lies left of x. */
    void text(double x, double y, const std::string &words, double size, const Colour &c,
              double anchor = 0.0, bool bold = false);

    /** Text made to fit in a width: smaller and, where that would not be readable, without its
     * beginning. */
    void fitted_text(double x, double y, std::string words, double size, const Colour &c,
                     double width);

    /** The image at a magnification below 1, from an upper left corner on. */
    void image(double x, double y, double magnification, const Image &image);

    /** Until release, nothing is drawn outside the rectangle. */
    void confine(const Rectangle &r);
    void release();

    /** What has been drawn. Throws Failure. */
    Picture picture() const;

private:
    struct Destroy {
        void operator()(cairo_surface_t *s) const
        {
            cairo_surface_destroy(s);
        }
        void operator()(cairo_t *c) const
        {
            cairo_destroy(c);
        }
    };
    using Surface = std::unique_ptr<cairo_surface_t, Destroy>;

    void colour(const Colour &c);
    double select_font(const std::string &words, double size, bool bold);
    void prepare(const Colour &c, double width, double dash);

    Surface surface;
    std::unique_ptr<cairo_t, Destroy> cairo;
};

} // namespace example

#endif
