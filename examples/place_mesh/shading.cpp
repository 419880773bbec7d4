#include "shading.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace example
{

namespace
{

/** How bright each triangle is, from 0 to 1. */
std::vector<float> brightness(const std::vector<KXV3> &normals, const KXM4 &view)
{
    // A matrix whose rows are directions turns a normal into its dot products with them: one pass
    // over all normals gives the share of a main light, of a second light, and of the viewer.
    KXV3 key, fill;
    KXEAToVector(0.8f, -0.6f, &key);
    KXEAToVector(0.1f, 1.1f, &fill);
    KXM4 lights = {
        {{key.x, key.y, key.z, 0}, {fill.x, fill.y, fill.z, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    KXM43Mult(&lights, &view, &lights);
    std::vector<KXV3> shares(normals.size());
    KXM4NP3I0(&lights, static_cast<std::uint32_t>(normals.size()), normals.data(), shares.data());

    std::vector<float> result;
    result.reserve(shares.size());
    for (const KXV3 &share : shares) {
        // Whichever way its corners run, a triangle shows the viewer its front.
        const float side = share.z < 0.0f ? -1.0f : 1.0f;
        result.push_back(0.30f + 0.66f * std::max(0.0f, side * share.x) +
                         0.24f * std::max(0.0f, side * share.y));
    }
    return result;
}

std::uint32_t colour(float bright)
{
    const auto channel = [bright](float full) {
        return static_cast<std::uint32_t>(std::min(255.0f, full * bright));
    };
    return 0xff000000U | channel(252) << 16 | channel(236) << 8 | channel(210);
}

/** An image with the nearness of what each pixel shows. */
class Canvas
{
public:
    Canvas(int width, int height)
        : image{width, height, std::vector<std::uint32_t>(pixel_count(width, height))},
          nearest(image.argb.size(), -std::numeric_limits<double>::infinity())
    {
    }

    void draw(const KXP3 &a, const KXP3 &b, const KXP3 &c, std::uint32_t argb)
    {
        const double area = cross(a, b, c.x, c.y);
        if (!(std::fabs(area) > 0.0)) {
            return; // seen edge on
        }
        const auto [left, right] = std::minmax({a.x, b.x, c.x});
        const auto [top, bottom] = std::minmax({a.y, b.y, c.y});
        for (int y = first(top); y < last(bottom, image.height); ++y) {
            // Between the edges at the pixels' middle, and one more on each side for rounding.
            const auto [from, to] = crossed(y + 0.5, a, b, c);
            for (int x = first(std::max(left, from - 1.5f));
                 x < last(std::min(right, to + 1.5f), image.width); ++x) {
                // The weights of the corners at the pixel's middle; one is negative outside.
                const double px = x + 0.5, py = y + 0.5;
                const double wa = cross(b, c, px, py) / area;
                const double wb = cross(c, a, px, py) / area;
                const double wc = 1.0 - wa - wb;
                if (wa < 0.0 || wb < 0.0 || wc < 0.0) {
                    continue;
                }
                const double near = wa * a.z + wb * b.z + wc * c.z;
                const std::size_t i = pixel_count(image.width, y) + static_cast<std::size_t>(x);
                if (near > nearest[i]) {
                    nearest[i] = near;
                    image.argb[i] = argb;
                }
            }
        }
    }

    Image image;

private:
    std::vector<double> nearest;

    static std::size_t pixel_count(int width, int rows)
    {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(rows);
    }

    /** Twice the area of the triangle p, q, (x, y) in the picture. */
    static double cross(const KXP3 &p, const KXP3 &q, double x, double y)
    {
        const double px = p.x, py = p.y, qx = q.x, qy = q.y;
        return (qx - px) * (y - py) - (qy - py) * (x - px);
    }

    /** Where a row crosses a triangle; the wrong way round where it doesn't. */
    static std::pair<float, float> crossed(double row, const KXP3 &a, const KXP3 &b, const KXP3 &c)
    {
        std::pair<float, float> range = {std::numeric_limits<float>::max(),
                                         std::numeric_limits<float>::lowest()};
        for (const auto &[p, q] : {std::pair(&a, &b), std::pair(&b, &c), std::pair(&c, &a)}) {
            const double py = p->y, qy = q->y, px = p->x, qx = q->x;
            if ((py <= row) != (qy <= row)) {
                const auto x = static_cast<float>(px + (row - py) / (qy - py) * (qx - px));
                range = {std::min(range.first, x), std::max(range.second, x)};
            }
        }
        return range;
    }

    static int first(float low)
    {
        return static_cast<int>(std::clamp(std::floor(low), 0.0f, 1e6f));
    }
    static int last(float high, int size)
    {
        return std::min(size, static_cast<int>(std::clamp(std::ceil(high), 0.0f, 1e6f)));
    }
};

} // namespace

Image shade(const Mesh &mesh, const std::vector<KXV3> &normals, const KXM4 &view,
            const KXM4 &pixels, int width, int height, Progress &progress)
{
    const std::vector<float> bright = brightness(normals, view);
    std::vector<KXP3> points(mesh.points.size());
    KXM4NP3I1(&pixels, mesh.point_count(), mesh.points.data(), points.data());
    Canvas canvas(width, height);
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
        const auto &corner = mesh.triangles[i];
        canvas.draw(points[corner[0]], points[corner[1]], points[corner[2]], colour(bright[i]));
        progress.advance(1);
    }
    return std::move(canvas.image);
}

} // namespace example
