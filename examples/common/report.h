/* What a program says: its report, its progress while a person waits, and why it can't go on. */
#ifndef EXAMPLES_REPORT_H
#define EXAMPLES_REPORT_H

#include "png_file.h"

#include <kxmaths5.h>

#include <chrono>
#include <cstddef>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

namespace example
{

/** What a program can't go on for, in one clear sentence. */
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ReportLine {
    std::string title, text;
};

/** What is said of a picture that has been written. */
ReportLine line_for(const std::string &path, const Picture &picture);

void print(const std::vector<ReportLine> &lines);

/** As printf does it. */
std::string text_of(const char *format, ...) __attribute__((format(printf, 1, 2)));

/** A point or vector as "(1, 2, 3)". What is below the last bit of its largest coordinate is 0. */
std::string text_of(const KXP3 &p);

/** A box as its two corners. */
std::string text_of(const KXBox &box);

/** 34835 and "triangle" as "34,835 triangles". */
std::string count_of(std::size_t count, const std::string &what);

constexpr float radians_per_degree = 0.017453292519943295f;

/** Degrees to four digits after the point, which is what singles are good for; never -0. */
double in_degrees(double radians);

/**
 * A progress bar on stderr. It shows itself only on a terminal, once the work has taken a while,
 * and clears its line at the end. Any thread may advance it.
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
