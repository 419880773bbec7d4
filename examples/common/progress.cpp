#include "progress.h"

#include <cstdio>
#include <unistd.h>

namespace example
{

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
