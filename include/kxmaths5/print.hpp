/**
 * @file
 * The values of kxmaths5.hpp as text: << for streams and, where the standard library has it,
 * std::formatter. A matrix takes a row of text for each of its rows, without an end of line after
 * the last.
 *
 *     (1, 2, 3)   xyzw(0, 0, 0, 1)   box (0, 0, 0) (1, 2, 3)   plane 0*x + 1*y + 0*z + -2
 *
 * The stream's precision and flags, and what a format gives after its colon, go for each number.
 */
#ifndef KXMATHS5_PRINT_HPP
#define KXMATHS5_PRINT_HPP

#include "kxmaths5.hpp"

#include <ostream>
#include <sstream>
#include <string>
#if __cplusplus >= 202002L && defined(__has_include)
#if __has_include(<format>)
#include <format>
#endif
#endif

namespace kxm
{

/** @cond */
namespace detail
{

/* Each value as a sequence of numbers and of what is between them: out takes both. */
template <typename Out>
void write(Out &out, const vec2 &v)
{
    out << "(" << v.x << ", " << v.y << ")";
}
template <typename Out>
void write(Out &out, const point2 &p)
{
    write(out, vec2(p));
}
template <typename Out>
void write(Out &out, const vec3 &v)
{
    out << "(" << v.x << ", " << v.y << ", " << v.z << ")";
}
template <typename Out>
void write(Out &out, const point3 &p)
{
    write(out, vec3(p));
}
template <typename Out>
void write(Out &out, const point4 &p)
{
    out << "(" << p.x << ", " << p.y << ", " << p.z << ", " << p.w << ")";
}
template <typename Out>
void write(Out &out, const quat &q)
{
    out << "xyzw";
    write(out, point4(q.x, q.y, q.z, q.w));
}
template <typename Out>
void write(Out &out, const box &b)
{
    out << "box ";
    write(out, b.minimum());
    out << " ";
    write(out, b.maximum());
}
template <typename Out>
void write(Out &out, const line &l)
{
    out << "line ";
    write(out, l.start());
    out << " ";
    write(out, l.end());
}
template <typename Out>
void write(Out &out, const ray &r)
{
    out << "ray ";
    write(out, r.origin());
    out << " ";
    write(out, r.direction());
}
template <typename Out>
void write(Out &out, const plane &p)
{
    out << "plane " << p.a << "*x + " << p.b << "*y + " << p.c << "*z + " << p.d;
}
template <typename Out>
void write(Out &out, const position &p)
{
    out << "position ";
    write(out, vec3(p.x, p.y, p.z));
    out << " ";
    write(out, vec3(p.rotateX, p.rotateY, p.rotateZ));
}

/** The rows of a matrix, with its columns in line. */
template <std::size_t size>
void write_rows(std::ostream &out, const float (&m)[size][size])
{
    std::string text[size][size];
    for (std::size_t c = 0; c < size; ++c) {
        std::size_t width = 0;
        for (std::size_t r = 0; r < size; ++r) {
            std::ostringstream number;
            number.copyfmt(out);
            number.width(0);
            number << m[r][c];
            text[r][c] = number.str();
            width = text[r][c].size() > width ? text[r][c].size() : width;
        }
        for (std::size_t r = 0; r < size; ++r) {
            text[r][c].insert(0, width - text[r][c].size(), ' ');
        }
    }
    for (std::size_t r = 0; r < size; ++r) {
        for (std::size_t c = 0; c < size; ++c) {
            out << (c > 0 ? "  " : r > 0 ? "\n" : "") << text[r][c];
        }
    }
}
template <typename Out, std::size_t size>
void write_rows(Out &out, const float (&m)[size][size])
{
    for (std::size_t r = 0; r < size; ++r) {
        for (std::size_t c = 0; c < size; ++c) {
            out << (c > 0 ? "  " : r > 0 ? "\n" : "") << m[r][c];
        }
    }
}
template <typename Out>
void write(Out &out, const mat3 &m)
{
    write_rows(out, m.m);
}
template <typename Out>
void write(Out &out, const mat4 &m)
{
    write_rows(out, m.m);
}

template <typename Value>
using IfPrintable = decltype(write(std::declval<std::ostream &>(), std::declval<const Value &>()));

} // namespace detail
/** @endcond */

/** Writes a value. */
template <typename Value, typename = detail::IfPrintable<Value>>
std::ostream &operator<<(std::ostream &out, const Value &value)
{
    detail::write(out, value);
    return out;
}

} // namespace kxm

#if defined(__cpp_lib_format)
/** @cond */
namespace kxm
{
namespace detail
{

/** Passes numbers to the formatter of floats, and copies text. */
template <typename Context>
struct FormatOut {
    const std::formatter<float> &number;
    Context &context;

    FormatOut &operator<<(const char *text)
    {
        auto place = context.out();
        for (; *text != '\0'; ++text) {
            *place++ = *text;
        }
        context.advance_to(place);
        return *this;
    }
    FormatOut &operator<<(float value)
    {
        context.advance_to(number.format(value, context));
        return *this;
    }
};

} // namespace detail
} // namespace kxm
/** @endcond */

/** Formats a value; what the format gives after its colon is for each number: `{:.2f}`. */
template <typename Value>
requires requires
{
    typename kxm::detail::IfPrintable<Value>;
}
struct std::formatter<Value, char> : std::formatter<float> {
    /** Writes the value. */
    template <typename Context>
    auto format(const Value &value, Context &context) const
    {
        kxm::detail::FormatOut<Context> out{*this, context};
        kxm::detail::write(out, value);
        return context.out();
    }
};
#endif

#endif
