/* The report of a program: lines with a title each, and numbers as text. */
#ifndef EXAMPLES_REPORT_H
#define EXAMPLES_REPORT_H

#include "png_file.h"

#include <kxmaths5.h>

#include <string>
#include <vector>

namespace example
{

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

/** Degrees to four digits after the point, which is what singles are good for; never -0. */
double in_degrees(double radians);

} // namespace example

#endif
