/* A progress bar on stderr, for work that a person waits for. */
#ifndef EXAMPLES_PROGRESS_H
#define EXAMPLES_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace example
{

/**
 * Shows itself only on a terminal, once the work has taken a while, and clears its line at the end.
 * Any thread may advance it.
 */
class Progress
{
public:
    Progress(std::string title, std::size_t steps);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    void advance(std::size_t count);

private:
    using Clock = std::chrono::steady_clock;

    std::mutex mutex;
    std::string title;
    std::size_t steps;
    std::size_t done = 0;
    Clock::time_point next_show;
    bool on_terminal;
    bool shown = false;
};

} // namespace example

#endif
