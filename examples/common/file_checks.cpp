#include "file_checks.h"

#include "report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

namespace example
{

namespace
{

constexpr std::string_view blanks = " \t\r\n\v\f";

/** Takes the next word off a text; empty at the end. */
std::string_view next_word(std::string_view &text)
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(blanks));
    text.remove_prefix(word.size());
    return word;
}

/** Takes the next line off a text, without its end: a line feed, a carriage return, or both. */
std::string_view next_line(std::string_view &text)
{
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(line.size());
    text.remove_prefix(text.substr(0, 2) == "\r\n" ? 2 : text.empty() ? 0 : 1);
    return line;
}

template <typename Number>
std::optional<Number> number_in(std::string_view word)
{
    if (!word.empty() && word.front() == '+') {
        word.remove_prefix(1);
    }
    Number value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    const bool is_number = error == std::errc() && end == word.data() + word.size();
    return is_number ? std::optional<Number>(value) : std::nullopt;
}

/** Reads an OBJ file line by line. */
class ObjText
{
public:
    ObjText(const std::string &path_, std::string_view text) : path(path_), rest(text)
    {
        constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";
        if (rest.substr(0, 3) == byte_order_mark) {
            rest.remove_prefix(3);
        }
        if (rest.substr(0, 2) == "\xff\xfe" || rest.substr(0, 2) == "\xfe\xff") {
            throw Failure(path + " is in UTF-16: save it as UTF-8");
        }
    }

    std::string plain()
    {
        while (!rest.empty()) {
            std::string line = logical_line();
            line.resize(std::min(line.find('#'), line.size()));
            std::string_view words = line;
            const std::string_view keyword = next_word(words);
            if (keyword == "v" || keyword == "vn") {
                add_vector(keyword, words);
            } else if (keyword == "f") {
                add_face(words);
            }
        }
        if (largest == 0) {
            throw Failure(path + " has no faces");
        }
        if (largest > vertices) {
            line_number = line_of_largest;
            fail("a face names vertex " + std::to_string(largest) + ", and the file has " +
                 std::to_string(vertices));
        }
        return std::move(out);
    }

private:
    [[noreturn]] void fail(const std::string &what) const
    {
        throw Failure(path + ", line " + std::to_string(line_number) + ": " + what);
    }

    static std::string printable(std::string_view word)
    {
        std::string text(word.substr(0, 20));
        std::replace_if(
            text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
        return text;
    }

    /** A line, together with those that a backslash at its end continues it in. */
    std::string logical_line()
    {
        std::string line(next_line(rest));
        line_number = lines_read + 1;
        ++lines_read;
        while (!line.empty() && line.back() == '\\' && !rest.empty()) {
            line.back() = ' ';
            line += next_line(rest);
            ++lines_read;
        }
        return line;
    }

    void add_vector(std::string_view keyword, std::string_view words)
    {
        out += keyword;
        for (int i = 0; i < 3; ++i) {
            const auto value = number_in<double>(next_word(words));
            if (!value ||
                !(std::fabs(*value) <= static_cast<double>(std::numeric_limits<float>::max()))) {
                fail(std::string(keyword == "v" ? "a vertex" : "a normal") +
                     " needs three finite numbers");
            }
            // Written anew: Assimp does not take ".5" for a number.
            char digits[32];
            const auto [end, unused] =
                std::to_chars(digits, digits + sizeof digits, static_cast<float>(*value));
            (out += ' ').append(digits, end);
        }
        out += '\n';
        ++(keyword == "v" ? vertices : normals);
    }

    /** Corners of the form 1, 1/2, 1//3 or 1/2/3, of which the first and the third number count. */
    void add_face(std::string_view words)
    {
        int corners = 0;
        out += 'f';
        for (std::string_view word = next_word(words); !word.empty(); word = next_word(words)) {
            const std::size_t slash = std::min(word.find('/'), word.size());
            const std::size_t second = std::min(word.find('/', slash + 1), word.size());
            const long vertex = index(word.substr(0, slash), vertices);
            if (vertex < 1) {
                fail("a face names vertex \"" + printable(word.substr(0, slash)) + "\", and " +
                     std::to_string(vertices) + " come before it");
            }
            if (vertex > largest) {
                largest = vertex;
                line_of_largest = line_number;
            }
            (out += ' ') += std::to_string(vertex);
            // A normal that is not there is done without.
            const long normal = second < word.size() ? index(word.substr(second + 1), normals) : 0;
            if (normal >= 1 && normal <= normals) {
                (out += "//") += std::to_string(normal);
            }
            ++corners;
        }
        if (corners < 3) {
            fail("a face needs three corners");
        }
        out += '\n';
    }

    /** A number counted from 1; one below zero is counted back from the latest. 0 if it is none. */
    static long index(std::string_view word, long so_far)
    {
        const long number = number_in<long>(word).value_or(0);
        return number < 0 ? so_far + 1 + number : number;
    }

    const std::string &path;
    std::string_view rest;
    std::string out;
    std::size_t lines_read = 0, line_number = 0;
    long vertices = 0, normals = 0; /**< So far. */
    long largest = 0;               /**< Of the vertices that faces name. */
    std::size_t line_of_largest = 0;
};

struct PlyType {
    std::string_view name, other_name;
    std::size_t size;
};
constexpr std::array<PlyType, 8> ply_types = {{{"char", "int8", 1},
                                               {"uchar", "uint8", 1},
                                               {"short", "int16", 2},
                                               {"ushort", "uint16", 2},
                                               {"int", "int32", 4},
                                               {"uint", "uint32", 4},
                                               {"float", "float32", 4},
                                               {"double", "float64", 8}}};

/** Walks through a PLY file as its header says. */
class PlyWalk
{
public:
    PlyWalk(const std::string &path_, std::string_view bytes) : path(path_), rest(bytes) {}

    void check()
    {
        read_header();
        for (const Element &element : elements) {
            for (std::size_t i = 0; i < element.count; ++i) {
                for (const Property &property : element.properties) {
                    std::size_t values = 1;
                    if (property.list_size != 0 && !take_count(property.list_size, values)) {
                        fail_after(i, element);
                    }
                    if (!take(values, property.size)) {
                        fail_after(i, element);
                    }
                }
            }
        }
    }

private:
    struct Property {
        std::size_t list_size, size; /**< Of the count of a list, 0 for a scalar; of each value. */
    };
    struct Element {
        std::string name;
        std::size_t count;
        std::vector<Property> properties;
    };

    void read_header()
    {
        if (next_line(rest) != "ply") {
            throw Failure(path + " does not begin as a PLY file");
        }
        for (std::size_t number = 2; !rest.empty(); ++number) {
            std::string_view words = next_line(rest);
            const std::string_view keyword = next_word(words);
            const std::string_view what = next_word(words);
            bool is_good = true;
            if (keyword == "end_header") {
                return;
            }
            if (keyword == "format") {
                is_text = what == "ascii";
                is_big_endian = what == "binary_big_endian";
            } else if (keyword == "element") {
                const auto count = number_in<std::uint32_t>(next_word(words));
                is_good = count.has_value();
                elements.push_back({std::string(what), count.value_or(0), {}});
            } else if (keyword == "property") {
                const bool is_list = what == "list";
                const std::size_t list_size = is_list ? size_of(next_word(words)) : 0;
                const std::size_t size = size_of(is_list ? next_word(words) : what);
                is_good = size != 0 && !elements.empty() && is_list == (list_size != 0);
                if (is_good) {
                    elements.back().properties.push_back({list_size, size});
                }
            }
            if (!is_good) {
                throw Failure(path + ", line " + std::to_string(number) +
                              ": this is not a line of a PLY header");
            }
        }
        throw Failure(path + " is cut off: its header has no end");
    }

    static std::size_t size_of(std::string_view type)
    {
        for (const PlyType &known : ply_types) {
            if (type == known.name || type == known.other_name) {
                return known.size;
            }
        }
        return 0;
    }

    bool take(std::size_t values, std::size_t size)
    {
        if (!is_text) {
            const bool are_there = values <= rest.size() / size;
            rest.remove_prefix(are_there ? values * size : rest.size());
            return are_there;
        }
        for (std::size_t i = 0; i < values; ++i) {
            if (next_word(rest).empty()) {
                return false;
            }
        }
        return true;
    }

    /** The count before the values of a list. */
    bool take_count(std::size_t size, std::size_t &count)
    {
        count = 0;
        const std::string_view before = rest;
        if (is_text) {
            const auto number = number_in<std::uint32_t>(next_word(rest));
            count = number.value_or(0);
            return number.has_value();
        }
        for (std::size_t i = 0; i < size && i < before.size(); ++i) {
            const std::size_t place = is_big_endian ? size - 1 - i : i;
            count |= std::size_t{static_cast<unsigned char>(before[i])} << 8 * place;
        }
        return take(1, size);
    }

    [[noreturn]] void fail_after(std::size_t complete, const Element &element) const
    {
        throw Failure(path + " is cut off or damaged: " + std::to_string(complete) + " of " +
                      std::to_string(element.count) + " in its list \"" + element.name +
                      "\" are complete");
    }

    const std::string &path;
    std::string_view rest;
    std::vector<Element> elements;
    bool is_text = false, is_big_endian = false;
};

} // namespace

std::string plain_obj(const std::string &path, std::string_view text)
{
    return ObjText(path, text).plain();
}

void check_ply(const std::string &path, std::string_view bytes)
{
    PlyWalk(path, bytes).check();
}

void check_off(const std::string &path, std::string_view bytes)
{
    std::string_view words = bytes;
    next_word(words); // OFF, or a variant of it
    for (const char *what : {"vertices", "faces"}) {
        const std::string count(next_word(words));
        // Each has a line of its own.
        const auto number = number_in<std::uint64_t>(count);
        if (number && *number > bytes.size()) {
            throw Failure(path + " is cut off or damaged: it is too short for " + count + " " +
                          what);
        }
    }
}

void check_stl(const std::string &path, std::string_view bytes)
{
    // Some binary files begin with the word too; their size gives them away.
    constexpr std::size_t header = 84, triangle = 50;
    std::uint32_t count = 0;
    if (bytes.size() >= header) {
        std::memcpy(&count, &bytes[header - sizeof count], sizeof count);
    }
    std::string_view words = bytes.substr(0, header);
    const bool is_text =
        next_word(words).substr(0, 5) == "solid" && bytes.size() != header + triangle * count;
    if (is_text && bytes.rfind("endsolid") == std::string_view::npos) {
        throw Failure(path + " is cut off: \"endsolid\" is missing");
    }
    if (!is_text && (bytes.size() < header || (bytes.size() - header) / triangle < count)) {
        throw Failure(path + " is cut off: it has room for " +
                      std::to_string((std::max(bytes.size(), header) - header) / triangle) +
                      " of its " + std::to_string(count) + " triangles");
    }
}

} // namespace example
