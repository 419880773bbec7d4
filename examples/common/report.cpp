#include "report.h"

#include <cstdarg>
#include <cstdio>

namespace example
{

ReportLine line_for(const std::string &path, const Picture &picture)
{
    return {"picture", path + text_of(", %d x %d pixels", picture.width, picture.height)};
}

void print(const std::vector<ReportLine> &lines)
{
    for (const ReportLine &line : lines) {
        std::printf("%-14s %s\n", line.title.c_str(), line.text.c_str());
    }
}

std::string text_of(const char *format, ...)
{
    char text[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

std::string text_of(const KXP3 &p)
{
    return text_of("(%.6g, %.6g, %.6g)", static_cast<double>(p.x), static_cast<double>(p.y),
                   static_cast<double>(p.z));
}

std::string text_of(const KXBox &box)
{
    return text_of(box.minimum) + " to " + text_of(box.maximum);
}

std::string with_commas(std::size_t count)
{
    std::string digits = std::to_string(count);
    for (std::size_t i = digits.size(); i > 3; i -= 3) {
        digits.insert(i - 3, ",");
    }
    return digits;
}

double in_degrees(double radians)
{
    return radians * 57.29577951308232 + 0.0; // -0 would be shown as such
}

} // namespace example
