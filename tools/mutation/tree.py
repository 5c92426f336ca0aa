"""The copy of the tree that holds the faults, and its build."""
import hashlib
import json
import os
import re
import shlex
import subprocess
from concurrent.futures import ProcessPoolExecutor
from dataclasses import asdict
from pathlib import Path

from sites import ON, Site, find_sites

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
WORK = ROOT / 'build' / 'mutate'
TREE = WORK / 'tree'
BUILD = TREE / 'build' / 'release'
SANITIZED = TREE / 'build' / 'sanitize'


def sources(folder):
    listed = subprocess.run(['git', 'ls-files', folder], cwd=ROOT, capture_output=True, text=True, check=True)
    return [path for path in listed.stdout.split() if path.endswith(('.cpp', '.h'))]


def arguments_of(path, commands):
    """What the compiler is told for a file; for a header, what it is told for a file beside it."""
    beside = [c for f, c in commands.items() if Path(f).parent == Path(path).parent] or list(commands.values())
    words = shlex.split(commands.get(path, beside[0]))
    kept = [w for w in words if w.startswith(('-I', '-D', '-std'))]
    for option, value in zip(words, words[1:]):
        if option == '-isystem':
            kept += [option, value]
    return [w.replace(str(TREE), str(ROOT)) for w in kept] + ['-xc++']


def indexed(job):
    """The sites of one file, from the last time if neither it nor the rules have changed."""
    path, arguments = job
    key = hashlib.sha256()
    for part in ((ROOT / path).read_bytes(), (HERE / 'sites.py').read_bytes(), path.encode()):
        key.update(part)
    kept = WORK / 'index' / key.hexdigest()
    if not kept.exists():
        kept.parent.mkdir(parents=True, exist_ok=True)
        kept.write_text(json.dumps([asdict(site) for site in find_sites(ROOT, path, arguments)]))
    return [Site(**site) for site in json.loads(kept.read_text())]


def all_sites(folders, workers):
    commands = {os.path.relpath(e['file'], TREE): e['command']
                for e in json.loads((BUILD / 'compile_commands.json').read_text())}
    jobs = [(path, arguments_of(path, commands)) for folder in folders for path in sources(folder)]
    with ProcessPoolExecutor(workers) as pool:
        return [site for found in pool.map(indexed, jobs) for site in found]


def copy_tree(sites=None):
    """Brings the copy up to date, with the faults of `sites` by their numbers; touches what changed.
    Without `sites` the sources stay as they are there, with their faults."""
    by_file = {}
    for number, site in (sites or {}).items():
        by_file.setdefault(site.file, {})[number] = site
    listed = subprocess.run(['git', 'ls-files', '-z', '--cached', '--others', '--exclude-standard'],
                            cwd=ROOT, capture_output=True, check=True)
    for path in filter(None, listed.stdout.decode().split('\0')):
        source, target = ROOT / path, TREE / path
        if not source.is_file() or sites is None and path.startswith('src/'):
            continue
        content = source.read_bytes()
        if path in by_file:
            content = with_faults(content, by_file[path])
        if not target.exists() or target.read_bytes() != content:
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(content)
            target.chmod(source.stat().st_mode)


def with_faults(content, sites):
    """The text with its faults; each line is one further down, behind the include."""
    keywords = {tuple(site.keyword) for site in sites.values() if site.keyword}
    pieces = [(start, end, '', None, text) for start, end, text in keywords]
    for number, site in sites.items():
        asked = f'{"orvMutantNow" if site.keyword else "orvMutant"}({number})'
        pieces += [(start, end, before.replace(ON, asked), behind, None)
                   for start, end, before, behind in site.wraps]
    pieces.sort(key=lambda p: (p[0], -p[1]))

    def render(start, end, inner):
        text, at = b'', start
        while inner:
            piece = inner[0]
            within = [p for p in inner[1:] if p[0] < piece[1]]
            inner = inner[1 + len(within):]
            body = piece[4].encode() if piece[4] else render(piece[0], piece[1], within)
            text += content[at:piece[0]] + piece[2].encode() + body + (piece[3] or '').encode()
            at = piece[1]
        return text + content[at:end]

    include = f'#include "{HERE}/Mutant.h"\n'.encode()
    return include + render(0, len(content), pieces)


def configure(folder=BUILD):
    subprocess.run(['cmake', '--preset', folder.name, '-DBUILD_TESTING=ON', '-DORV_WERROR=OFF'],
                   cwd=TREE, check=True, stdout=subprocess.DEVNULL)


def build(targets, jobs, folder=BUILD):
    """Builds; gives the places, (file, line), that the compiler complained of, or none."""
    if not (folder / 'build.ninja').exists():
        configure(folder)
    run = subprocess.run(['cmake', '--build', str(folder), f'-j{jobs}', '--target', *targets, '--',
                          '-k', '0'], capture_output=True, text=True)
    if run.returncode == 0:
        return []
    complaints = r'^(\S+?):(\d+):\d+: +(?:error|required|note: .* was not initialized with a constant)'
    places = {(os.path.relpath((BUILD / found[1]).resolve(), TREE), int(found[2]) - 1)
              for found in re.finditer(complaints, run.stdout, re.M)}
    if not places:
        raise SystemExit(run.stdout[-4000:])
    return places


def faulty(sites, places):
    """The numbers of the sites that stand at the places of errors; of their files, where none does."""
    lines = {number: lines_of(site) for number, site in sites.items()}
    found = {n for n, s in sites.items() if any(f == s.file and line in lines[n] for f, line in places)}
    files = {f for f, _ in places}
    return found or {n for n, s in sites.items() if s.file in files}


def lines_of(site):
    content = (ROOT / site.file).read_bytes()
    offsets = [offset for wrap in site.wraps for offset in wrap[:2]] + site.keyword[:2]
    first, last = (content.count(b'\n', 0, at) + 1 for at in (min(offsets), max(offsets)))
    return range(first, last + 1)
