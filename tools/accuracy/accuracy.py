"""Measures how far results are from the true values, and prints the rows of worst_errors.txt.

With --check it prints none: it fails when an error is above the one in the file, when the file's own input doesn't
give its row, and for a function that is neither measured nor has a reason. scripts/accuracy starts it.
"""
import argparse
import itertools
import math
import multiprocessing
import os
import pathlib
import re
import sys

import numpy as np

from experiments import EXPERIMENTS, UNMEASURED
from inputs import Random

HERE = pathlib.Path(__file__).resolve().parent
RECORDED = HERE / "worst_errors.txt"
EXPORTS = HERE.parents[1] / "src/exports.txt"
COLUMNS = ("function", "inputs", "result", "ulp of", "worst error", "ulp of a double", "input", "arguments")
AT_ONCE = 10000  # Inputs whose arrays fit in a cache.


def seed_of(experiment):
    """FNV-1a: experiments don't share their inputs, and one more of them changes no other's."""
    seed = 0xcbf29ce484222325
    for byte in (experiment.function + experiment.inputs).encode():
        seed = (seed ^ byte) * 0x100000001b3 % 2**64
    return seed


def run(experiment, first, end):
    """The arguments of the inputs from one number to below another, and the errors of each result."""
    def draw(random):
        arguments, errors, *accepted = experiment.run(random, *experiment.parameters)
        return *arguments, *errors, *(accepted or [np.full(errors[0].shape, True)])
    with np.errstate(all="ignore"):
        drawn = Random.of_inputs(seed_of(experiment), first, end).until_accepted(draw)
    results = len(experiment.results)
    return drawn[:-results], drawn[-results:]


def worst_of_part(part):
    """Of each result the largest error, and the first input that gives it."""
    index, first, end = part
    _, errors = run(EXPERIMENTS[index], first, end)
    return [(each.max(), first + each.argmax()) for each in errors]


def measured(experiments, inputs):
    """Of each experiment and the place of each of its results: the largest error, and the first input that gives it.
    The inputs are shared by the cores."""
    parts = [(EXPERIMENTS.index(each), first, min(first + AT_ONCE, inputs))
             for each in experiments for first in range(0, inputs, AT_ONCE)]
    with multiprocessing.Pool(len(os.sched_getaffinity(0))) as pool:
        found = zip(parts, pool.imap(worst_of_part, parts))
        for index, some in itertools.groupby(found, lambda each: each[0][0]):
            for place, worst in enumerate(zip(*(of_results for _, of_results in some))):
                # max takes the first of equal ones.
                yield EXPERIMENTS[index], place, *max(worst, key=lambda each: each[0])


def rounded_up(error):
    """Four digits: what it bounds stays below it."""
    if error == 0 or math.isinf(error):
        return f"{error:.0f}"
    step = 10.0**(math.floor(math.log10(error)) - 3)
    return f"{math.ceil(error / step) * step:{'.4g' if error < 1000 else '.0f'}}"


def key_of(experiment, place):
    """The columns that say what was measured."""
    result = experiment.results[place]
    return f"{experiment.function}\t{experiment.inputs}\t{result.name}\t{result.unit}"


def given_by(experiment, place, number):
    """The other columns: what one input gives."""
    arguments, errors = run(experiment, number, number + 1)
    error = errors[place][0]
    in_double = rounded_up(error * 2**29) if experiment.results[place].is_double else ""
    numbers = [str(each).removesuffix(".0") for argument in arguments for each in argument.reshape(-1)]
    return f"{rounded_up(error)}\t{in_double}\t{number}\t{' '.join(numbers)}"


def reasons():
    """Why each function is not measured that isn't. A function has its true values or a reason."""
    exports = EXPORTS.read_text(encoding="utf-8").split()
    functions = {each.function.split(",")[0] for each in EXPERIMENTS}
    found = {name: reason for reason, names in UNMEASURED.items() for name in names.split()}
    for name in exports:
        if name not in functions and name not in found:
            sys.exit(f"accuracy: {name} is not measured, and nothing says why")
    for name in found:
        if name in functions or name not in exports:
            sys.exit(f"accuracy: {name} has a reason not to be measured, but it is measured, or no function")
    return {name: found[name] for name in exports if name in found}


def recorded_rows():
    rows = {}
    for line in RECORDED.read_text(encoding="utf-8").splitlines()[1:]:
        columns = line.split("\t")
        size = 4 if len(columns) == len(COLUMNS) and columns[6].isdigit() else 1
        rows["\t".join(columns[:size])] = "\t".join(columns[size:])
    return rows


def complaints(experiments, unmeasured, inputs, rows):
    """What doesn't agree with the rows; those that do are removed."""
    for experiment, place, error, number in measured(experiments, inputs):
        key = key_of(experiment, place)
        if key not in rows:
            yield f"{key}\thas no row"
            continue
        row = rows.pop(key)
        bound, _, named, _ = row.split("\t")
        again = given_by(experiment, place, int(named))
        if again != row:
            yield f"{key}\tinput {named} gives\n    {again}\nand not\n    {row}"
        elif error > float(bound):
            yield f"{key}\tinput {number} has an error of {rounded_up(error)}, above {bound}"
    for name, reason in unmeasured.items():
        if rows.get(name) != reason:
            yield f"{name}\thas no row that says: {reason}"
        rows.pop(name, None)


def check(experiments, unmeasured, inputs, pattern):
    rows = {key: row for key, row in recorded_rows().items() if pattern.search(key.split("\t")[0])}
    count = len(rows)
    found = list(complaints(experiments, unmeasured, inputs, rows))
    found += [f"{key}\tis a row of nothing that is measured" for key in rows]
    if found:
        sys.exit("\n".join(found))
    print(f"{count} rows of {RECORDED.name} hold for the first {inputs} inputs")


def print_rows(experiments, unmeasured, inputs):
    print(*COLUMNS, sep="\t")
    for experiment, place, _, number in measured(experiments, inputs):
        print(key_of(experiment, place), given_by(experiment, place, number), sep="\t", flush=True)
    for name, reason in unmeasured.items():
        print(name, reason, sep="\t")


def main():
    parser = argparse.ArgumentParser(prog="accuracy", description=__doc__.splitlines()[0])
    parser.add_argument("--inputs", type=int, default=2000000, metavar="N",
                        help="how many inputs each function is given; %(default)s if it isn't said")
    parser.add_argument("--check", action="store_true", help=f"hold the results to {RECORDED.name}")
    parser.add_argument("filter", nargs="?", default="", metavar="FILTER",
                        help="a regular expression, looked for in the functions' names")
    options = parser.parse_args()
    if np.finfo(np.longdouble).nmant < 63:
        sys.exit("accuracy: long double is hardly wider than a double here, and too narrow for true values")
    if not 1 <= options.inputs <= 10**9:
        sys.exit("accuracy: --inputs takes a number from 1 to 1000000000")
    try:
        pattern = re.compile(options.filter)
    except re.error as error:
        sys.exit(f"accuracy: {options.filter} is not a regular expression: {error}")
    experiments = [each for each in EXPERIMENTS if pattern.search(each.function)]
    unmeasured = {name: reason for name, reason in reasons().items() if pattern.search(name)}
    if not experiments and not unmeasured:
        sys.exit(f"accuracy: no function's name matches {options.filter}")
    if options.check:
        check(experiments, unmeasured, options.inputs, pattern)
    else:
        print_rows(experiments, unmeasured, options.inputs)


if __name__ == "__main__":
    main()
