#include "report.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <unistd.h>

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
    const double x = static_cast<double>(p.x), y = static_cast<double>(p.y),
                 z = static_cast<double>(p.z);
    const double noise = 1.2e-7 * std::max({std::fabs(x), std::fabs(y), std::fabs(z)});
    const auto clean = [noise](double value) { return std::fabs(value) <= noise ? 0.0 : value; };
    return text_of("(%.6g, %.6g, %.6g)", clean(x), clean(y), clean(z));
}

std::string text_of(const KXBox &box)
{
    return text_of(box.minimum) + " to " + text_of(box.maximum);
}

std::string count_of(std::size_t count, const std::string &what)
{
    std::string digits = std::to_string(count);
    for (std::size_t i = digits.size(); i > 3; i -= 3) {
        digits.insert(i - 3, ",");
    }
    return digits + " " + what + (count == 1 ? "" : "s");
}

double in_degrees(double radians)
{
    return std::round(radians * 57.29577951308232 * 1e4) / 1e4 + 0.0; // -0 would be shown as such
}

Progress::Progress(std::string title_, std::size_t steps_)
    : title(std::move(title_)), steps(steps_),
      next_show(Clock::now() + std::chrono::milliseconds(300)), on_terminal(isatty(STDERR_FILENO))
{
}

Progress::~Progress()
{
    if (shown) {
        std::fputs("\r\033[K", stderr);
    }
}

void Progress::advance(std::size_t count)
{
    const std::lock_guard<std::mutex> lock(mutex);
    done += count;
    if (!on_terminal || Clock::now() < next_show) {
        return;
    }
    constexpr int width = 40;
    const double part = static_cast<double>(done) / static_cast<double>(steps);
    const std::string bar(static_cast<std::size_t>(part * width), '#');
    std::fprintf(stderr, "\r%s [%-*s] %3.0f%%", title.c_str(), width, bar.c_str(), 100.0 * part);
    shown = true;
    next_show = Clock::now() + std::chrono::milliseconds(100);
}

} // namespace example
