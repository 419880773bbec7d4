"""Changes the library in one place at a time, and sees whether the tests notice.

Each changed source is built into a module of its own, and the test programs of the preset gcc
are run with that module: first the tests of the source's topic, then the others, quick ones
first. What no test notices may still give other digests; those are counted by themselves, and what
neither notices has survived. unobservable.txt has the changes that no test could notice, each group
with its reason. Any other that no test has noticed is a failure, and so is a line of that file that
fits no change any more, or that a test has noticed."""
import argparse
import collections
import concurrent.futures
import os
import pathlib
import queue
import random
import re
import shutil
import subprocess
import sys
import time

import mutations
from source import Source

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
EXPLAINED = HERE / 'unobservable.txt'
SECONDS = 60  # for one test program; the slowest takes ten at most
# Digests hold more than contracts promise, such as what is stored by a call that has failed.
EXPLAINED_OUTCOME = {'survived': 'unobservable', 'killed by digests': 'unobservable',
                     'killed': 'explained, but killed'}
FAILURES = ('survived', 'killed by digests', 'explained, but killed')
REPORTED = (*FAILURES, 'timeout')
Mutant = collections.namedtuple('Mutant', 'path line name change text')


def name_of(*parts):
    """File, function, mutation and operand. It outlives what a clean-up changes: lines, blanks, comments and the
    namespace's name."""
    name = ': '.join(re.sub(r'//[^\n]*|\bkx::', '', part) for part in parts)
    return re.sub(r'(?<=[(\[{]) | (?=[)\]}])', '', ' '.join(name.split()))


def mutants_of(path):
    source = Source(path, (ROOT / path).read_text())
    changes = {change[:3]: change[3:] for mutation in mutations.ALL for change in mutation(source)}
    names = collections.Counter()
    for (start, end, new), words in sorted(changes.items()):
        text = source.text
        line_start, line_end = text.rfind('\n', 0, start) + 1, text.find('\n', end)
        before, after = text[line_start:start], text[end:line_end].split('//')[0]
        old = re.sub(r'//[^\n]*', '', text[start:end])
        change = f'{before}[-{old}-]{{+{new}+}}{after}'.replace('[--]', '').replace('{++}', '')
        function = next((t.function for t in source.tokens if t.start >= start), None)
        name = name_of(path, function[0] if function else '-', *words)
        names[name] += 1
        yield Mutant(path, text.count('\n', 0, start) + 1, name + f' #{names[name]}' * (names[name] > 1),
                     ' '.join(change.split()), text[:start] + new + text[end:])


def explained_names():
    """The lines that are neither empty nor a reason."""
    lines = EXPLAINED.read_text().splitlines() if EXPLAINED.exists() else []
    return [line for line in lines if line and not line.startswith('#')]


def instruction_set():
    """The best copy of the kernels that this processor runs: of another nothing would be noticed."""
    features = pathlib.Path('/proc/cpuinfo').read_text().split()
    return 'auto' if 'avx512vl' in features else 'avx2' if 'avx2' in features else 'baseline'


class Worker:
    """A copy of the sources with a build of its own."""

    def __init__(self, number, preset):
        self.tree = ROOT / 'build/mutate' / preset / str(number)
        shutil.rmtree(self.tree, ignore_errors=True)
        shutil.copytree(ROOT, self.tree, ignore=shutil.ignore_patterns('build', '.git'))
        self.build = self.tree / 'build' / preset
        # The system's headers are read once, not with each change: that is half of a compilation.
        headers = self.tree / 'headers.cmake'
        headers.write_text('cmake_language(DEFER CALL target_precompile_headers kxmaths5 PRIVATE <math.h> <string.h>'
                           ' $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:<emmintrin.h$<ANGLE-R>>)')
        options = ['-DKX_BUILD_TESTS=ON', '-DKX_BUILD_EXAMPLES=OFF', '-DCMAKE_BUILD_TYPE=Mutant',
                   '-DCMAKE_CXX_FLAGS_MUTANT=-O1', '-DCMAKE_LINK_DEPENDS_NO_SHARED=ON',
                   f'-DCMAKE_PROJECT_INCLUDE={headers}']
        if preset == 'gcc':
            options.append('-DKX_INSTRUCTION_SET=' + instruction_set())
        subprocess.run(['cmake', '--preset', preset, '--log-level=WARNING', *options], cwd=self.tree,
                       check=True, stdout=subprocess.DEVNULL)
        # The copies of the kernels are tested in a program that they are linked into.
        self.module = self.build / 'src/libkxmaths5.so'
        self.kernels = self.build / 'tests/test_matrix_kernels'
        if not self.make('kxmaths5') or not self.make('test_matrix_kernels'):
            sys.exit('The library does not build as it is.')
        self.originals = {path: path.read_bytes() for path in (self.module, self.kernels)}

    def make(self, target):
        return subprocess.run(['ninja', '-C', self.build, target], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0

    def passes(self, program):
        environment = dict(os.environ, LD_LIBRARY_PATH=str(self.build / 'src'))
        is_digest = program.name == 'kx_digest'
        done = subprocess.run([program] if is_digest else [program, '--abort-after=1'], env=environment,
                              timeout=SECONDS, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        if is_digest:
            return done.stdout == (self.tree / 'tools/digest/digests.txt').read_bytes()
        return done.returncode == 0

    def try_mutant(self, mutant, programs):
        """What became of it, in a word."""
        source = self.tree / mutant.path
        original = source.read_text()
        source.write_text(mutant.text)
        try:
            return self.outcome(mutant, programs)
        except subprocess.TimeoutExpired:
            return 'timeout'
        finally:
            source.write_text(original)

    def outcome(self, mutant, programs):
        if not self.make('kxmaths5'):
            return 'not built'
        own = 'test_' + mutant.path.removeprefix('src/').rsplit('.', 1)[0].replace('/', '_')
        digest = next(i for i, program in enumerate(programs) if program.name == 'kx_digest')
        quick = sorted(programs[:digest], key=lambda program: program.name != own)
        changed = self.module.read_bytes() != self.originals[self.module]
        if changed and not all(self.passes(program) for program in quick):
            return 'killed'
        if not self.make('test_matrix_kernels'):
            return 'not built'
        if self.kernels.read_bytes() == self.originals[self.kernels]:
            if not changed:
                return 'same code'
        elif not self.passes(self.kernels):
            return 'killed'
        if not self.passes(programs[digest]):
            return 'killed by digests'
        return 'survived' if all(self.passes(program) for program in programs[digest + 1:]) else 'killed'


def measured_programs(worker, build):
    """Copies of the build's test programs and of the digests', quick ones first. All must pass."""
    seconds = {}
    for original in [*sorted((build / 'tests').glob('test_*')), build / 'tools/kx_digest']:
        if original.is_file() and original.name != worker.kernels.name:
            program = pathlib.Path(shutil.copy(original, worker.tree.parent))
            start = time.monotonic()
            if not worker.passes(program):
                sys.exit(f'{program.name} fails with the library as it is.')
            seconds[program] = time.monotonic() - start
    return sorted(seconds, key=seconds.get)


def main():
    parser = argparse.ArgumentParser(prog='mutate', description=__doc__.split('\n\n')[0])
    parser.add_argument('--sample', type=int, metavar='N', help='only N of them, at random; with 0 '
                        'the explained ones are looked up, and that is all')
    parser.add_argument('--seed', type=int, default=1, help='another sample (default: %(default)s)')
    parser.add_argument('--preset', default='gcc', help='the build (default: %(default)s)')
    parser.add_argument('filter', nargs='?', default='', metavar='FILTER',
                        help="a regular expression for a change's file: function: mutation: operand, such as ^src/polar")
    options = parser.parse_args()

    everything = sorted(str(path.relative_to(ROOT)) for path in (ROOT / 'src').glob('**/*.[ch]*')
                        if path.suffix in ('.cpp', '.h') and path.parent.name != 'module')
    mutants = [m for path in everything for m in mutants_of(path)]
    explained = set(explained_names())
    stale = sorted(explained - {m.name for m in mutants})
    for name in stale:
        print('explained, but there is no such change:', name)
    mutants = [m for m in mutants if re.search(options.filter, m.name)]
    if options.sample is not None:
        mutants = sorted(random.Random(options.seed).sample(mutants, min(options.sample, len(mutants))))

    if not mutants:
        sys.exit(bool(stale))
    subprocess.run([ROOT / 'scripts/build', 'gcc'], check=True, stdout=subprocess.DEVNULL)
    workers = queue.SimpleQueue()
    count = os.cpu_count() or 1
    with concurrent.futures.ThreadPoolExecutor(count) as pool:
        for worker in pool.map(lambda n: Worker(n, options.preset), range(count)):
            workers.put(worker)
        programs = measured_programs(worker, ROOT / 'build/gcc')

        def outcome_of(mutant):
            worker = workers.get()
            try:
                return worker.try_mutant(mutant, programs)
            finally:
                workers.put(worker)

        counts = collections.Counter()
        for mutant, outcome in zip(mutants, pool.map(outcome_of, mutants)):
            if mutant.name in explained:
                outcome = EXPLAINED_OUTCOME.get(outcome, outcome)
            counts[outcome] += 1
            if outcome in REPORTED:
                print(f'{outcome}, line {mutant.line}: {mutant.change}', mutant.name, sep='\n', flush=True)
    print(f'{len(mutants)} mutants:', ', '.join(f'{n} {outcome}' for outcome, n in sorted(counts.items())))
    sys.exit(bool(stale or any(counts[outcome] for outcome in FAILURES)))


if __name__ == '__main__':
    main()
