"""The tests, which sites each of them comes by, and what becomes of one fault."""
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import time
from collections import defaultdict
from dataclasses import dataclass, replace
from pathlib import Path

from tree import BUILD, SANITIZED, TREE, WORK

MEMORY, FILE = 8 << 30, 4 << 30  # bytes that a faulty program may take, and write into one file
SLOWER = 12  # a test with sanitizers, about
SKIPPED = 77  # what tests that are commands end with where they cannot be run


@dataclass
class Case:
    """A test: of a program by its name there, or a command of its own where `name` is None."""
    title: str
    command: list
    name: str
    folder: str
    seconds: float = 0.0
    reached: frozenset = frozenset()


def cases(programs):
    """The tests of CTest that these programs have, and those that are called so themselves."""
    listed = subprocess.run(['ctest', '--test-dir', str(BUILD), '--show-only=json-v1'],
                            capture_output=True, text=True, check=True)
    found = []
    for test in json.loads(listed.stdout)['tests']:
        command, properties = test.get('command'), {p['name']: p['value'] for p in test['properties']}
        if not command:
            continue
        filtered = [a for a in command if a.startswith('--gtest_filter=')]
        folder = os.path.relpath(properties['WORKING_DIRECTORY'], BUILD / 'tests')
        if filtered and Path(command[0]).name in programs:
            found.append(Case(test['name'], command[:1], filtered[0].split('=', 1)[1], folder))
        elif test['name'] in programs:
            found.append(Case(test['name'], command, None, folder))
    return found


def run(command, seconds, worker=0, **environment):
    """Runs a command as on a clone without the corpus; its exit code, or None out of time; its output."""
    scratch = WORK / 'scratch' / str(worker)
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)
    names = {**os.environ, 'ORV_CORPUS': str(WORK / 'none'), 'TMPDIR': str(scratch),
             'QT_QPA_PLATFORM': 'offscreen', **{k: str(v) for k, v in environment.items()}}

    def bounded():
        for ignored in signal.SIGINT, signal.SIGHUP:  # by programs in the background
            signal.signal(ignored, signal.SIG_DFL)
        if SANITIZED not in Path(command[0]).parents:  # those map what they never use
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
        resource.setrlimit(resource.RLIMIT_FSIZE, (FILE, FILE))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    with subprocess.Popen(command, cwd=scratch, env=names, stdin=subprocess.DEVNULL, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, errors='replace',
                          start_new_session=True, preexec_fn=bounded) as process:
        try:
            output = process.communicate(timeout=seconds)[0]
            return process.returncode, output
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            return None, process.communicate()[0]


def command_of(batch, *options):
    if batch[0].name is None:
        return batch[0].command
    return [*batch[0].command, '--gtest_filter=' + ':'.join(c.name for c in batch), *options]


def sanitized(case):
    """The same test in the build with sanitizers, which takes longer."""
    return replace(case, command=[case.command[0].replace(str(BUILD), str(SANITIZED))],
                   seconds=SLOWER * case.seconds)


def survey(case, sites, worker):
    """Runs a test without fault: how long it takes, and what it comes by; None where it does not pass."""
    marks = WORK / f'reached-{worker}'
    marks.write_bytes(bytes(sites))
    for _ in range(2):  # on a busy machine one may fail by chance
        begun = time.monotonic()
        code, output = run(command_of([case]), 600, worker, ORV_MUTANTS_REACHED=marks)
        case.seconds = time.monotonic() - begun
        if code == 0:
            break
    if code not in (0, SKIPPED):
        return f'{case.title} fails without a fault'
    if code == SKIPPED or '[  SKIPPED ]' in output:
        return f'{case.title} is skipped'
    case.reached = frozenset(i for i, mark in enumerate(marks.read_bytes()) if mark)
    return None


def nearness(case, site):
    """How many folders of the site's path the test is in, after `src` and `tests`."""
    ways = zip(case.folder.split('/'), site.file.split('/')[1:])
    return next((i for i, (a, b) in enumerate(ways) if a != b), min(case.folder.count('/'), site.file.count('/')) + 1)


def quickest(number, tests, seconds):
    """Of the tests that come by the site those that are quick, as many as take so long together."""
    chosen = []
    for case in sorted((c for c in tests if number in c.reached), key=lambda c: c.seconds):
        seconds -= case.seconds
        if seconds < 0:
            break
        chosen.append(case)
    return chosen


def batches(number, site, tests):
    """The tests that come by the site, near ones first; of each program first the quick ones."""
    by_program = defaultdict(list)
    for case in tests:
        if number in case.reached:
            by_program[case.folder, case.command[0], case.title if case.name is None else ''].append(case)
    for group in sorted(by_program.values(), key=lambda g: (-nearness(g[0], site), sum(c.seconds for c in g))):
        for quick in (True, False):
            batch = [c for c in group if (c.seconds < 0.3) == quick]
            if batch:
                yield batch


def failed(output):
    """The test that a program of GoogleTest failed, or died, in."""
    found = re.findall(r'^\[  FAILED  \] ([\w./]+)', output, re.M) or re.findall(r'^\[ RUN +\] ([\w./]+)', output, re.M)[-1:]
    return found[0] if found else 'its program'


def try_fault(number, site, tests, worker):
    """What became of a fault: (outcome, test)."""
    outcome = 'unreached'
    for batch in batches(number, site, tests):
        outcome = 'survived'
        limit = 10 + 6 * sum(c.seconds for c in batch)
        code, output = run(command_of(batch, '--gtest_fail_fast'), limit, worker, ORV_MUTANT=number)
        if code != 0:
            confirmed = first_failure(number, batch, failed(output), worker)
            if confirmed:
                return confirmed
    return outcome, ''


def first_failure(number, batch, suspect, worker):
    """What becomes of a fault whose batch failed, each test by itself: on a busy machine one may fail by chance."""
    for case in sorted(batch, key=lambda c: c.name != suspect):
        code, _ = run(command_of([case]), 10 + 6 * case.seconds, worker, ORV_MUTANT=number)
        if code != 0:
            return 'out of time' if code is None else 'caught', case.title
    return None


def failures(number, site, tests, worker):
    """All tests that fail for a fault, each asked by itself."""
    found = []
    for case in tests:
        if number in case.reached:
            code, _ = run(command_of([case]), 10 + 6 * case.seconds, worker, ORV_MUTANT=number)
            if code != 0:
                found.append(case.title)
    return found
