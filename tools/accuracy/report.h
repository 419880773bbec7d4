/* The tables of docs/accuracy.md. */
#ifndef KX_ACCURACY_REPORT_H
#define KX_ACCURACY_REPORT_H

#include "measure.h"

namespace accuracy
{

constexpr const char *column_separator = " | ";

/** An error to four digits, rounded upwards: what it bounds stays below it. */
std::string rounded_up(double error);

/** The cells of a row that say what was measured, up to the error. */
std::string row_key(const Experiment &experiment, const Result &result);

/** Measures, and prints the tables and the inputs of the worst errors. */
void print_tables(const std::vector<Topic> &topics, std::uint64_t inputs);

} // namespace accuracy

#endif
