# SPDX-License-Identifier: MIT
"""What scripts/mutate does; see there."""
import collections
import fcntl
import functools
import hashlib
import json
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
HOME = pathlib.Path(os.environ.get('MUTATE_HOME', ROOT / 'build/mutate'))
# A build that is there already and is not to be touched, or one of a copy.
TREE = ROOT if 'MUTATE_BUILD' in os.environ else HOME / 'tree'
BUILD = ROOT / os.environ.get('MUTATE_BUILD', TREE / 'build/release')
NAMED = ROOT / 'scripts/mutate.named'
SURVIVORS = HOME / 'survivors.json'

# The quickest to build and test first.
FOLDERS = ['strings', 'codecs', 'dates', 'dialogs', 'tables', 'messages', 'files', 'profile',
           'shell', 'platform', 'base', 'draw', 'platform/qt']
# The programs under tests/ that are run for a folder or a file, where those are not the ones of
# the folder's name, and which cases of the program that has all calls fail.
TESTED_BY = {
    'base': ['strings/strings_test', 'codecs/codecs_test', 'files/files_test',
             'profile/profile_test', 'tables/tables_test', 'draw/draw_test',
             'messages/messages_test', 'dialogs/dialogs_test'],
    'files': ['files/files_test', 'profile/profile_test'],
    'strings/vectors.h': ['strings/strings_test', 'tables/tables_test', 'profile/profile_test'],
    'strings/trim.h': ['strings/strings_test', 'codecs/codecs_test'],
    'platform': ['platform/platform_test'],
    # They are part of the shared library alone.
    'platform/exceptionstate.cpp': ['dialogs/throwing_callbacks_test'],
    'platform/processmemory.cpp': ['platform/platform_test'],
    'platform/qt': ['platform/qt_module_test', 'draw/draw_module_test', 'draw/draw_memory_test',
                    'platform/platform_test'],
}
FAULTS = {
    'base': '*',
    'codecs': 'Faults.OfNumbers',
    'dates': 'Faults.OfDates',
    'dialogs': 'Faults.OfDialogs',
    'draw': 'Faults.OfDrawing',
    'files': 'Faults.OfFiles:Faults.OfProfiles:Replace.*:InPlace.*:Lock.*',
    'messages': 'Faults.OfDrawing',
    'profile': 'Faults.OfProfiles:Profiles.*',
    'shell': 'Faults.OfTools',
    'strings': 'Faults.OfTexts',
    'tables': 'Faults.OfTables:ReadFaults.*:KeepFaults.*',
}
PROOF = 'dates/texts.cpp'
SLOW = 1.0  # seconds; a test that takes longer runs after all others
MEMORY = 8 << 30  # bytes of address space
PROGRAM = re.compile(r'korvel_test\((\w+)')
SANDBOX_FAILED = 99
ENVIRONMENT = {**os.environ, 'QT_QPA_PLATFORM': 'offscreen', 'TMPDIR': '/tmp', 'HOME': '/tmp',
               'BUILD': str(BUILD)}

# `which`: the how manieth of how many equal lines of the file is meant.
Mutant = collections.namedtuple('Mutant', 'file line old new which')


# ---- Changes of a line

SWAPS = {
    '==': ['!='], '!=': ['=='], '<': ['<=', '>='], '<=': ['<', '>'], '>': ['>=', '<='],
    '>=': ['>', '<'], '&&': ['||'], '||': ['&&'], '+': ['-'], '-': ['+'], '*': ['/'], '/': ['*'],
    '%': ['/'], '&': ['|'], '|': ['&'], '^': ['|'], '<<': ['>>'], '>>': ['<<'], '+=': ['-='],
    '-=': ['+='], '*=': ['/='], '/=': ['*='], '|=': ['&='], '&=': ['|='], '^=': ['|='],
    '<<=': ['>>='], '>>=': ['<<='],
}
OPERATOR = re.compile(r'(?<= )(?:%s)(?= |$)' % '|'.join(
    re.escape(swap) for swap in sorted(SWAPS, key=len, reverse=True)))
NUMBER = re.compile(r"(?<![\w.'])(0[xX][0-9A-Fa-f']+|\d[\d']*)(?![\w.'])")
FRACTION = re.compile(r'(?<![\w.])(\d+\.\d+)')
CONDITION = re.compile(r'\b(if|while) \(')
CALL = re.compile(r'[A-Za-z_][\w:]*(?:(?:\.|->)[A-Za-z_]\w*|\[[^\]]*\]|\(\))*\(.*\);')
ASSIGNMENT = re.compile(r'[*\w.\[\]>()-]+ [-+*/|&^]?= .*;|(?:\+\+|--)[\w.>-]+;')
JUMP = re.compile(r'(?:break|continue|return);')
LITERAL = re.compile(r'''"(?:[^"\\]|\\.)*"|(?<![0-9A-Fa-f])'(?:[^'\\]|\\.)+\'''')


def operator_changes(code):
    for at in OPERATOR.finditer(code):
        for swap in SWAPS[at[0]]:
            yield at.start(), at.end(), swap
    for at in re.finditer(r'\+\+|--', code):
        yield at.start(), at.end(), '--' if at[0] == '++' else '++'
    for at in re.finditer(r'!(?=[\w(*])', code):
        yield at.start(), at.end(), ''


def number_form(number):
    """The base of a number, and how another one is written in it."""
    if number[:2] in ('0x', '0X'):
        return 16, '0x%x'
    return (8, '0%o') if number[0] == '0' and len(number) > 1 else (10, '%d')


def constant_changes(code, line):
    for at in NUMBER.finditer(code):
        base, form = number_form(at[0])
        value = int(at[0].replace("'", ''), base)
        for other in (value + 1, value - 1):
            if other >= 0:
                yield at.start(), at.end(), form % other
    for at in FRACTION.finditer(code):
        yield at.start(), at.end(), str(float(at[0]) * 1.5)
    for at in re.finditer(r'\b(true|false)\b', code):
        yield at.start(), at.end(), 'false' if at[0] == 'true' else 'true'
    for at in re.finditer(r"(?<![0-9A-Fa-f])'([ -~])'", line):
        if code[at.start():at.start() + 1] == '"' and at[1] not in "'\\&]":
            yield at.start(1), at.end(1), chr(ord(at[1]) ^ 1)


def closing(code, opening):
    """The place of the parenthesis that closes the one at `opening`, or None."""
    depth = 0
    for at in range(opening, len(code)):
        depth += {'(': 1, ')': -1}.get(code[at], 0)
        if depth == 0:
            return at
    return None


def condition_changes(code):
    for at in CONDITION.finditer(code):
        end = closing(code, at.end() - 1)
        if end is None:
            continue
        yield at.end() - 1, end + 1, '(false)'
        if at[1] == 'if':
            yield at.end() - 1, end + 1, '(true)'


def dropped_statements(code):
    start = len(code) - len(code.lstrip())
    head = re.match(r'\s*(?:\} )?(?:else )?(?:if|for|while) \(|\s*else ', code)
    if head and head[0].endswith('('):
        end = closing(code, head.end() - 1)
        start = len(code) if end is None else end + 2
    elif head:
        start = head.end()
    rest = code[start:].rstrip()
    if any(kind.fullmatch(rest) for kind in (CALL, ASSIGNMENT, JUMP)):
        yield start, start + len(rest), '{}'


def changes(code, line):
    """The changed forms of a line; `code` is the line without comments and literals."""
    places = [*operator_changes(code), *constant_changes(code, line), *condition_changes(code),
              *dropped_statements(code)]
    return sorted({line[:start] + text + line[end:] for start, end, text in places} - {line})


def code_lines(text):
    """Each line that has code to change, with its number and its code alone."""
    inside = False
    for number, line in enumerate(text.split('\n'), 1):
        code = LITERAL.sub(lambda at: '"' + ' ' * (len(at[0]) - 2) + '"', line)
        if inside and '*/' not in code:
            continue
        inside = '/*' in code and '*/' not in code
        code = code.split('//')[0].rstrip()
        if re.match(r'\s*(#|\*|/\*|static_assert|namespace\b|using\b|template\b|virtual\b|$)', code):
            continue
        yield number, line, code


def mutants_of(root, file):
    """By line: every mutant of a source."""
    lines, equals = {}, collections.defaultdict(list)
    for number, line, code in code_lines((root / file).read_text()):
        equals[line.strip()].append(number)
        lines[number] = line.strip(), [changed.strip() for changed in changes(code, line)]
    return {number: [Mutant(file, number, old, new,
                            (equals[old].index(number) + 1, len(equals[old]))) for new in found]
            for number, (old, found) in lines.items() if found}


def sources(folder):
    return sorted(f'{folder}/{path.name}' for path in (TREE / folder).iterdir()
                  if path.suffix in (('.cpp',) if TREE == ROOT else ('.cpp', '.h')))


def folder_of(mutant):
    return mutant.file.rpartition('/')[0]


def chosen(folder, seed):
    """Every line of a folder once, in a random order, with one change of it."""
    lines = [line for file in sources(folder) for line in mutants_of(TREE, file).values()]
    dice = random.Random(f'{seed} {folder}')
    dice.shuffle(lines)
    return [dice.choice(line) for line in lines]


# ---- What is named

def named():
    """The mutants that nothing can notice: {(file, old, new, which): reason}."""
    known = {}
    for block in re.split(r'\n\s*\n', NAMED.read_text() if NAMED.exists() else ''):
        lines = [line for line in block.splitlines() if line and not line.startswith('#')]
        if lines:
            place, old, new, *reason = lines
            file, *which = re.fullmatch(r'(\S+)(?: \((\d+) of (\d+)\))?', place).groups('1')
            key = file, old.removeprefix('- '), new.removeprefix('+ '), tuple(map(int, which))
            known[key] = ' '.join(reason)
    return known


def key_of(mutant):
    return mutant.file, mutant.old, mutant.new, mutant.which


def check_named():
    """Says which of the named mutants the sources no longer have."""
    wrong = []
    for key, reason in named().items():
        file, old, new, which = key
        lines = mutants_of(ROOT, file).values() if (ROOT / file).exists() else []
        if not any(key == key_of(each) for line in lines for each in line):
            wrong.append(f'{file}: no such mutant ({which[0]} of {which[1]}): {old} -> {new}')
        elif not reason:
            wrong.append(f'{file}: no reason: {old} -> {new}')
    print('\n'.join(wrong) if wrong else f'{len(named())} mutants are named')
    return 1 if wrong else 0


# ---- The copy and its tests

def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, errors='replace', **options)


def put(path, content):
    if not path.exists() or path.read_bytes() != content:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


def copy_sources():
    files = set(run('git', 'ls-files', '-co', '--exclude-standard', cwd=ROOT).stdout.splitlines())
    (TREE / 'build').mkdir(parents=True, exist_ok=True)
    for file in sorted(files):
        if (ROOT / file).is_file():
            put(TREE / file, (ROOT / file).read_bytes())
            shutil.copymode(ROOT / file, TREE / file)
    for folder, folders, names in os.walk(TREE):
        if folder == str(TREE):
            folders.remove('build')
        for path in (pathlib.Path(folder, name) for name in names):
            if str(path.relative_to(TREE)) not in files:
                path.unlink()


def configure():
    os.environ.setdefault('CCACHE_SLOPPINESS', 'pch_defines,time_macros')
    if (BUILD / 'build.ninja').exists():
        return
    # A mutant that only draws a warning is a mutant.
    done = run('cmake', '--preset', 'release', '-DKORVEL_BUILD_BENCH=OFF',
               '-DKORVEL_WARNINGS_AS_ERRORS=OFF',
               '-DCMAKE_CXX_COMPILER_LAUNCHER=ccache', '-DCMAKE_C_COMPILER_LAUNCHER=ccache',
               '-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST', cwd=TREE,
               env={**os.environ, 'LDFLAGS': '-fuse-ld=lld'})
    if done.returncode:
        sys.exit(done.stdout + done.stderr)


# A mutant may remove, overwrite or kill anything: it sees its own processes only, no network, and
# every file system but its own temporary folders is read-only. What is made of it stands in the
# places of the build's own. The flags of a mount that belongs to somebody else have to be kept.
SANDBOX = r'''
set -e
trap 'status=$?; [ $status = 0 ] || exit 99' EXIT
mount --make-rprivate /
mount -t proc proc /proc
while [ "$1" != -- ]; do mount --bind "$1" "$2"; shift 2; done
shift
while read -r _ place _ options _; do
  place=$(printf %b "$place")
  if [ "$place" = /proc ] || ! mountpoint -q "$place"; then continue; fi
  flags=ro
  for flag in nosuid nodev noexec; do
    case ,$options, in *,$flag,*) flags=$flags,$flag ;; esac
  done
  mount -o "remount,bind,$flags" "$place"
done </proc/self/mounts
for place in /tmp /dev/shm; do mount -t tmpfs -o mode=1777,size=4g tmpfs $place; done
ip link set lo up 2>/dev/null || true
cd /tmp
[ -e "$BUILD" ]
exec "$@"
'''


def caged(command, places):
    """A command that is kept apart from the rest of the system."""
    rights = [] if os.geteuid() == 0 else ['--user', '--map-root-user']
    binds = [str(end) for place, made in places.items() for end in (made, place)]
    return ['unshare', *rights, '--mount', '--pid', '--net', '--ipc', '--fork', '--kill-child',
            'prlimit', f'--as={MEMORY}', '--core=0', 'sh', '-c', SANDBOX, 'sh', *binds, '--',
            *command]


def sandboxed(command, limit, places={}, results=os.devnull):
    """The status of a command; None when it took longer than `limit` seconds."""
    with open(results, 'w') as output:
        # Ended from inside, too, should nobody be left here to do it.
        command = ['timeout', '-s', 'KILL', str(int(limit) + 5), *command]
        process = subprocess.Popen(caged(command, places), stdin=subprocess.DEVNULL,
                                   stdout=output, stderr=subprocess.DEVNULL, env=ENVIRONMENT,
                                   start_new_session=True)
        try:
            return process.wait(limit)
        except subprocess.TimeoutExpired:
            return None
        finally:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()


def demand_sandbox():
    """Ends the run where mutants cannot be kept apart, and says why."""
    tried = run(*caged(['true'], {}), env=ENVIRONMENT)
    if tried.returncode:
        say('mutants cannot be kept apart from the rest of the system here (as an ordinary user '
            'that takes user namespaces, and sources outside /tmp):\n' + tried.stderr)
        sys.exit(SANDBOX_FAILED)


Test = collections.namedtuple('Test', 'source seconds together')


class Program:
    """A program of tests: what it has, and how long that takes without a mutant."""

    def __init__(self, path, cases='*'):
        folder, _, self.name = path.rpartition('/')
        self.path = BUILD / 'tests' / path
        self.cases = cases
        self.tests = {}  # name -> Test
        lists = (TREE / 'tests' / folder / 'CMakeLists.txt').read_text()
        self.is_alone = f'korvel_test({self.name} ALONE' in lists

    def measure(self):
        """Cases that are meant to have a process of their own share it where they can."""
        if self.is_alone:
            for suite, names in self.suites().items():
                if not self.take(f'{suite}.*', whole=True):
                    for name in names:
                        self.take(name)
        else:
            self.take(self.cases)
        say(f'{self.name}: {len(self.tests)} tests, '
            f'{sum(test.seconds for test in self.tests.values()):.0f} s')

    def suites(self):
        suites = collections.defaultdict(list)
        for line in run(self.path, '--gtest_list_tests', env=ENVIRONMENT).stdout.splitlines():
            if line.startswith('  '):
                suites[suite].append(f'{suite}.{line.split()[0]}')
            else:
                suite = line.split()[0].rstrip('.')
        return suites

    def take(self, cases, whole=False):
        """Notes the cases that pass; with `whole` all of them or none. Whether it did."""
        report = self.report(cases)
        found = [(f'{suite["name"]}.{test["name"]}', test)
                 for suite in report['testsuites'] for test in suite['testsuite']]
        failed = [name for name, test in found if 'failures' in test]
        if whole and (failed or not found):
            return False
        for name in failed or ([] if found else [cases]):
            say(f'{self.name}: left out, as it fails without a mutant: {name}')
        for name, test in found:
            if name not in failed and test['result'] == 'COMPLETED':
                self.tests[name] = Test(pathlib.Path(test['file']).name,
                                        float(test['time'].rstrip('s')), cases)
        return True

    def report(self, cases):
        """What is reported of cases; nothing of a run that breaks off."""
        place = reports() / f'{self.name} {cases}'.replace('/', '|')
        if not place.exists():
            made = place.with_name('made')  # a run that is interrupted has measured nothing
            sandboxed(['sh', '-c', '"$@" --gtest_output=json:report >/dev/null; cat report', 'sh',
                       self.path, f'--gtest_filter={cases}'], 1800, results=made)
            made.rename(place)
        return json.loads(place.read_text() or '{"testsuites": []}')

    def status(self, tests, places):
        """What running some of the tests ends with; None when they do not end."""
        limit = 20 + 4 * sum(self.tests[test].seconds for test in tests)
        groups = collections.defaultdict(list)
        for test in tests:
            groups[self.tests[test].together].append(test)
        filters = ['--gtest_filter=' + ':'.join(group) for group in groups.values()]
        return sandboxed(['sh', '-c', 'program=$1; shift; '
                          'for cases; do "$program" --gtest_fail_fast "$cases" || exit 1; done',
                          'sh', self.path, *filters], limit, places)


@functools.cache
def reports():
    """Where reports are of the sources, tests and data as they are; those of others go."""
    place = HOME / 'reports' / state_of_copy()
    if not place.exists():
        shutil.rmtree(place.parent, ignore_errors=True)
        place.mkdir(parents=True)
    return place


def state_of_copy():
    """What the sources, tests and data are, as a word."""
    state = hashlib.sha256()
    for folder, folders, names in os.walk(TREE):
        if folder == str(TREE):
            folders[:] = set(folders) - {'build', '.git'}
        folders.sort()
        for path in (pathlib.Path(folder, name) for name in sorted(names)):
            state.update(os.fsencode(path) + b' ' + hashlib.sha256(path.read_bytes()).digest())
    return state.hexdigest()[:16]


def programs_of(folder):
    paths = TESTED_BY.get(folder)
    if paths is None:
        text = (TREE / 'tests' / folder / 'CMakeLists.txt').read_text()
        paths = [f'{folder}/{name}' for name in PROGRAM.findall(text)]
    programs = [Program(path) for path in paths]
    if folder in FAULTS:
        programs.append(Program('faults/faults_test', FAULTS[folder]))
    return programs


def rounds(programs, mutant):
    """What is run, one after the other: tests of the source, quick tests, slow tests."""
    own = pathlib.Path(mutant.file).stem + '_test.cpp'
    for kind in (lambda test: test.source == own and test.seconds < SLOW,
                 lambda test: test.source != own and test.seconds < SLOW,
                 lambda test: test.seconds >= SLOW):
        for program in programs:
            tests = [name for name, test in program.tests.items() if kind(test)]
            if tests:
                yield program, tests


LIBRARY = BUILD / 'CMakeFiles/korvel_core.dir'
SHARED = BUILD / 'CMakeFiles/korvel.dir'
MODULE = BUILD / 'platform/qt/CMakeFiles/korvel_qt.dir'
SHARED_FILE = BUILD / 'libkorvel.so.1.0.0'
MODULE_FILE = BUILD / 'korvel-qt.so'


def objects_of(file):
    """What is compiled of a source; of a header that is left to the build."""
    places = (LIBRARY / f'{file}.o', SHARED / f'{file}.o',
              MODULE / f'{file.removeprefix("platform/qt/")}.o',
              MODULE / '__' / f'{file.removeprefix("platform/")}.o')
    return [place for place in places if place.exists()]


# ---- What becomes of mutants

class Tested:
    """A folder of the library, or a file of one, its tests built and measured."""

    def __init__(self, name):
        self.name = name
        self.programs = programs_of(name)
        if TREE != ROOT:
            built = self.build()
            if built.returncode:
                sys.exit(built.stdout[-4000:])
        for program in self.programs:
            program.measure()

    def build(self):
        module = ['korvel_qt'] if self.name == 'platform/qt' else []
        return run('ninja', '-j1', *module, *(program.name for program in self.programs), cwd=BUILD)

    def fate(self, mutant):
        if objects_of(mutant.file):
            change = OfSource(mutant)
        elif TREE != ROOT:
            change = OfHeader(mutant, self)
        else:
            return 'refused'
        with change:
            if not change.compiles():
                return 'refused'
            if change.is_the_same_code():
                return 'same'
            for program, tests in rounds(self.programs, mutant):
                change.link(program)
                status = program.status(tests, change.linked)
                if status == SANDBOX_FAILED:
                    sys.exit('the tests cannot be run apart from the rest of the system')
                if status != 0:
                    return 'endless' if status is None else 'killed'
            return 'survived'


class OfHeader:
    """The copy with one line changed, for as long as a block lasts; the build knows what depends on
    the header."""

    def __init__(self, mutant, tested):
        self.tested = tested
        self.path = TREE / mutant.file
        self.original = self.path.read_text()
        self.changed = changed_text(self.original, mutant)
        self.linked = {}

    def __enter__(self):
        self.path.write_text(self.changed)
        return self

    def __exit__(self, *_):
        self.path.write_text(self.original)

    def compiles(self):
        return self.tested.build().returncode == 0

    def is_the_same_code(self):
        return False

    def link(self, program):
        pass


class OfSource:
    """Its objects are compiled, and what is run is linked, beside those of the build, which notices
    nothing."""

    def __init__(self, mutant):
        self.path = TREE / mutant.file
        self.place = HOME / 'mutant'
        shutil.rmtree(self.place, ignore_errors=True)
        self.place.mkdir(parents=True)
        self.source = self.place / self.path.name
        self.source.write_text(changed_text(self.path.read_text(), mutant))
        self.objects = {path: self.place / f'{number}.o'
                        for number, path in enumerate(objects_of(mutant.file))}
        self.linked = {}  # what it takes the place of -> what was linked

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.place)

    def compiles(self):
        return all(repeat(path, {path: made, self.path: self.source})
                   for path, made in self.objects.items())

    def is_the_same_code(self):
        return all(path.read_bytes() == made.read_bytes() for path, made in self.objects.items())

    def link(self, program):
        linked_to = {LIBRARY: program.path, SHARED: SHARED_FILE, MODULE: MODULE_FILE}
        wanted = {file for place, file in linked_to.items()
                  if any(place in path.parents for path in self.objects)}
        for path in wanted - self.linked.keys():
            self.linked[path] = self.place / path.name
            if not repeat(path, {path: self.linked[path], **self.objects}):
                sys.exit(f'cannot be linked: {path}')


def changed_text(text, mutant):
    lines = text.split('\n')
    lines[mutant.line - 1] = lines[mutant.line - 1].replace(mutant.old, mutant.new)
    return '\n'.join(lines)


def in_build(path):
    return str(path.relative_to(BUILD) if BUILD in path.parents else path)


@functools.cache
def command_of(path):
    """The build's command that makes a file, without what it does when that is done."""
    text = run('ninja', '-t', 'commands', '-s', in_build(path), cwd=BUILD).stdout
    return next(part for part in text.strip().split(' && ') if f' -o {in_build(path)} ' in part)


def repeat(path, places):
    """Makes a file anew, with other files in the places of some; whether that worked."""
    command = command_of(path).removeprefix('ccache ')
    for place, other in places.items():
        command = re.sub(r'(?<= )%s(?=\.d | |$)' % re.escape(in_build(place)), str(other), command)
    # What only draws a warning is a mutant.
    return run('sh', '-c', command.replace(' -Werror ', ' '), cwd=BUILD).returncode == 0


def say(text):
    print(text, flush=True)


def shown(mutant):
    which = ' (%d of %d)' % mutant.which if mutant.which[1] > 1 else ''
    return f'{mutant.file}:{mutant.line}{which}\n    - {mutant.old}\n    + {mutant.new}'


def share(count, folders, seed):
    """By folder: its mutants in random order, and how many of them are wanted, by its lines."""
    mutants = {name: chosen(name, seed) for name in folders}
    whole, behind, wanted = sum(map(len, mutants.values())), 0, {}
    for name in sorted(folders, key=lambda name: len(mutants[name])):  # and the smallest has one
        until = behind + len(mutants[name])
        wanted[name] = -(-count * until // whole) - -(-count * behind // whole)
        behind = until
    return {name: (own, wanted[name]) for name, own in mutants.items()}


@functools.cache
def tested_by(name):
    return Tested(name)


def judge(shares):
    """Tries each folder's mutants until so many were built; tells all, returns the survivors."""
    known, survivors = named(), []
    fates = collections.defaultdict(collections.Counter)
    for name, (mutants, wanted) in shares.items():
        for mutant in mutants:
            if fates[name].total() - fates[name]['refused'] - fates[name]['same'] == wanted:
                break
            tested = tested_by(mutant.file if mutant.file in TESTED_BY else name)
            fate = 'named' if key_of(mutant) in known else tested.fate(mutant)
            fates[name][fate] += 1
            say(f'{time.strftime("%H:%M:%S")} {fate}: {shown(mutant)}')
            if fate == 'survived':
                survivors.append(mutant)
                SURVIVORS.write_text(json.dumps(survivors))
    SURVIVORS.write_text(json.dumps(survivors))
    tell(fates)
    return survivors


FATES = ['killed', 'endless', 'named', 'survived', 'same', 'refused']


def prove():
    """Whether the tests of a small source notice a mutant of it, and not those that are named."""
    mutants = [each for line in mutants_of(TREE, PROOF).values() for each in line]
    random.Random(PROOF).shuffle(mutants)
    tested, known, wrong = Tested(folder_of(mutants[0])), named(), 0
    for mutant in mutants:
        if key_of(mutant) in known:
            fate = tested.fate(mutant)
            wrong += fate not in ('survived', 'same')
            say(f'named, {fate}: {shown(mutant)}')
    for mutant in mutants:
        fate = 'named' if key_of(mutant) in known else tested.fate(mutant)
        if fate not in ('named', 'refused', 'same'):
            say(f'{fate}: {shown(mutant)}')
            return 1 if wrong or fate == 'survived' else 0
    return 1


def tell(fates):
    say(f'\n{"":14}' + ''.join(f'{fate:>10}' for fate in FATES))
    for name in sorted(fates):
        say(f'{name:14}' + ''.join(f'{fates[name][fate]:10}' for fate in FATES))
    whole = sum(fates.values(), collections.Counter())
    say(f'{"":14}' + ''.join(f'{whole[fate]:10}' for fate in FATES))


# ---- What is asked for

def at_lines(places):
    for place in places:
        file, _, line = place.rpartition(':')
        yield from mutants_of(TREE, file).get(int(line), [])


def by_folder(mutants):
    shares = {}
    for mutant in mutants:
        shares.setdefault(folder_of(mutant), []).append(mutant)
    return {name: (own, len(own)) for name, own in shares.items()}


def survivors_again():
    for file, _, old, new, which in json.loads(SURVIVORS.read_text()):
        key = file, old, new, tuple(which)
        yield from (each for line in mutants_of(TREE, file).values() for each in line
                    if key_of(each) == key)


def main(arguments):
    if arguments == ['--check']:
        return check_named()
    HOME.mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # and the copy is put back
    seed = 1
    if arguments[:1] == ['--seed']:
        seed, arguments = int(arguments[1]), arguments[2:]
    lock = open(HOME / 'lock', 'w')
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except OSError:
        sys.exit(f'another run is working in {HOME}')
    if TREE != ROOT:
        copy_sources()
        configure()
    demand_sandbox()
    if arguments == ['--prove']:
        return prove()
    if arguments == ['--again']:
        shares = by_folder(survivors_again())
    elif arguments and ':' in arguments[0]:
        shares = by_folder(at_lines(arguments))
    else:
        count = 400
        if arguments and arguments[0].isdigit():
            count, arguments = int(arguments[0]), arguments[1:]
        unknown = set(arguments) - set(FOLDERS)
        if unknown:
            sys.exit(f'no such folder: {", ".join(unknown)}')
        shares = share(count, arguments or FOLDERS, seed)
    survivors = judge(shares)
    for mutant in survivors:
        say(f'survived: {shown(mutant)}')
    return 1 if survivors else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
