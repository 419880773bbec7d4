/* The tables, in Markdown, line by line as the measurements come in. */
#ifndef BENCH_REPORT_H
#define BENCH_REPORT_H

#include "comparisons.h"
#include "measure.h"

/** What a row's checks came to. */
struct Checks {
    double difference = 0.0;
    bool agrees = true;
    bool same_bits = true;
};

class Report
{
public:
    /** Tells the processor's family, and which goals count: those for vectors or the others. */
    Report(const std::string &instruction_set, int repetitions);

    void add(const Comparison &row, const Peer &peer, const Times &ours, const Times &theirs,
             const Checks &checks);
    void add(const Function &row, const Times &times);
    void add(const Scale &scale);

    /** Returns whether every check passed. Missed goals are reported, and are no failure. */
    bool end() const;

private:
    /** Each table begins with the first of its rows, so a filter leaves no empty ones. */
    enum class Table { none, comparisons, functions, scale };
    bool begins(Table next);

    Table table = Table::none;
    bool has_vectors;
    int goals = 0, met = 0, failed_checks = 0;
};

#endif
