"""What scripts/mutate does; see there."""
import collections
import fcntl
import functools
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
TREE = HOME / 'tree'
BUILD = TREE / 'build/release'
NAMED = ROOT / 'scripts/mutate.named'
SURVIVORS = HOME / 'survivors.json'

# The quickest to build and test first.
FOLDERS = ['strings', 'codecs', 'dates', 'dialogs', 'tables', 'messages', 'files', 'profile',
           'shell', 'platform', 'base', 'draw', 'platform/qt']
# The programs under tests/ that are run, where those are not the ones of the folder's name.
TESTED_BY = {
    'base': ['strings/strings_test', 'codecs/codecs_test', 'files/files_test',
             'profile/profile_test', 'tables/tables_test', 'draw/draw_test',
             'messages/messages_test', 'dialogs/dialogs_test'],
    'platform': ['platform/platform_test'],
    'platform/qt': ['platform/qt_module_test', 'draw/draw_module_test'],
}
SLOW = 1.0  # seconds; a test that takes longer runs after all others
MEMORY = 8 << 30  # bytes of address space
PROGRAM = re.compile(r'korvel_test\((\w+)')
SANDBOX_FAILED = 99

Mutant = collections.namedtuple('Mutant', 'file line old new')


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
    lines = {}
    for number, line, code in code_lines((root / file).read_text()):
        found = [Mutant(file, number, line.strip(), changed.strip())
                 for changed in changes(code, line)]
        if found:
            lines[number] = found
    return lines


def sources(folder):
    return sorted(f'{folder}/{path.name}' for path in (TREE / folder).iterdir()
                  if path.suffix in ('.cpp', '.h'))


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
    """The mutants that nothing can notice: {(file, old, new): reason}."""
    known = {}
    for block in re.split(r'\n\s*\n', NAMED.read_text() if NAMED.exists() else ''):
        lines = [line for line in block.splitlines() if line and not line.startswith('#')]
        if lines:
            file, old, new, *reason = lines
            known[(file, old.removeprefix('- '), new.removeprefix('+ '))] = ' '.join(reason)
    return known


def check_named():
    """Says which of the named mutants the sources no longer have."""
    wrong = []
    for (file, old, new), reason in named().items():
        lines = mutants_of(ROOT, file).values() if (ROOT / file).exists() else []
        if not any((old, new) == (each.old, each.new) for line in lines for each in line):
            wrong.append(f'{file}: no such mutant: {old} -> {new}')
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
    if (BUILD / 'build.ninja').exists():
        return
    # The toolkit's headers take longer to read than all else; they are read once.
    headers = HOME / 'headers.cmake'
    put(headers, b'cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL\n'
                 b'  target_precompile_headers korvel_qt PRIVATE <QtWidgets>)\n')
    os.environ.setdefault('CCACHE_SLOPPINESS', 'pch_defines,time_macros')
    done = run('cmake', '--preset', 'release', '-DKORVEL_BUILD_BENCH=OFF',
               '-DCMAKE_CXX_COMPILER_LAUNCHER=ccache', '-DCMAKE_C_COMPILER_LAUNCHER=ccache',
               '-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST',
               f'-DCMAKE_PROJECT_korvel_INCLUDE={headers}', cwd=TREE,
               env={**os.environ, 'LDFLAGS': '-fuse-ld=lld'})
    if done.returncode:
        sys.exit(done.stdout + done.stderr)


# A mutant may remove, overwrite or kill anything: it sees its own processes only, no network, and
# every file system but its own temporary folders is read-only.
SANDBOX = r'''
mount --make-rprivate /
mount -t proc proc /proc
awk '$2 != "/proc" { print $2 }' /proc/self/mounts | while read -r place; do
  mount -o remount,bind,ro "$place" 2>/dev/null || [ "$place" != / ] || exit 1
done || exit 99
for place in /tmp /dev/shm; do mount -t tmpfs -o mode=1777,size=4g tmpfs $place || exit 99; done
ip link set lo up 2>/dev/null
cd /tmp && exec "$@"
'''


def sandboxed(command, limit, results=None):
    """The status of a command; None when it took longer than `limit` seconds."""
    rights = [] if os.geteuid() == 0 else ['--user', '--map-root-user']
    caged = ['unshare', *rights, '--mount', '--pid', '--net', '--ipc', '--fork', '--kill-child',
             'prlimit', f'--as={MEMORY}', '--core=0', 'sh', '-c', SANDBOX, 'sh', *command]
    environment = {**os.environ, 'QT_QPA_PLATFORM': 'offscreen', 'TMPDIR': '/tmp', 'HOME': '/tmp'}
    with open(results or os.devnull, 'w') as output:
        process = subprocess.Popen(caged, stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.DEVNULL, env=environment,
                                   start_new_session=True)
        try:
            return process.wait(limit)
        except subprocess.TimeoutExpired:
            return None
        finally:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()


class Program:
    """A program of tests: what it has, and how long that takes without a mutant."""

    def __init__(self, path):
        self.name = path.rpartition('/')[2]
        self.path = BUILD / 'tests' / path
        self.tests = {}  # name -> (source, seconds)

    def measure(self):
        report = HOME / f'{self.name}.report'
        if not report.exists() or report.stat().st_mtime < newest_test():
            sandboxed(['sh', '-c', '"$@" --gtest_output=json:report >/dev/null; cat report', 'sh',
                       self.path], 1800, report)
        for suite in json.loads(report.read_text())['testsuites']:
            for test in suite['testsuite']:
                name = f'{suite["name"]}.{test["name"]}'
                if 'failures' in test:
                    say(f'{self.name}: left out, as it fails without a mutant: {name}')
                elif test['result'] == 'COMPLETED':
                    source = pathlib.Path(test['file']).name
                    self.tests[name] = (source, float(test['time'].rstrip('s')))
        say(f'{self.name}: {len(self.tests)} tests, '
            f'{sum(seconds for _, seconds in self.tests.values()):.0f} s')

    def status(self, tests):
        """What running some of the tests ends with; None when they do not end."""
        limit = 30 + 10 * sum(self.tests[test][1] for test in tests)
        return sandboxed([self.path, '--gtest_fail_fast',
                          '--gtest_filter=' + ':'.join(tests)], limit)


def newest_test():
    return max(path.stat().st_mtime for path in (TREE / 'tests').rglob('*') if path.is_file())


def programs_of(folder):
    if folder in TESTED_BY:
        return [Program(path) for path in TESTED_BY[folder]]
    text = (TREE / 'tests' / folder / 'CMakeLists.txt').read_text()
    return [Program(f'{folder}/{name}') for name in PROGRAM.findall(text)]


def rounds(programs, mutant):
    """What is run, one after the other: tests of the source, quick tests, slow tests."""
    own = pathlib.Path(mutant.file).stem + '_test.cpp'
    for kind in (lambda source, seconds: source == own and seconds < SLOW,
                 lambda source, seconds: source != own and seconds < SLOW,
                 lambda source, seconds: seconds >= SLOW):
        for program in programs:
            tests = [name for name, test in program.tests.items() if kind(*test)]
            if tests:
                yield program, tests


LIBRARY = BUILD / 'CMakeFiles/korvel_core.dir'
MODULE = BUILD / 'platform/qt/CMakeFiles/korvel_qt.dir'
MODULE_FILE = BUILD / 'korvel-qt.so'


def objects_of(file):
    """What is compiled of a source; of a header that is left to the build."""
    places = (LIBRARY / f'{file}.o', MODULE / f'{file.removeprefix("platform/qt/")}.o',
              MODULE / '__' / f'{file.removeprefix("platform/")}.o')
    return [place for place in places if place.exists()]


# ---- What becomes of mutants

class Folder:
    """A folder of the library, its tests built and measured."""

    def __init__(self, name):
        self.name = name
        self.programs = programs_of(name)
        built = self.build()
        if built.returncode:
            sys.exit(built.stdout[-4000:])
        for program in self.programs:
            program.measure()

    def build(self):
        module = ['korvel_qt'] if self.name == 'platform/qt' else []
        return run('ninja', '-j1', *module, *(program.name for program in self.programs), cwd=BUILD)

    def fate(self, mutant):
        change = OfSource(mutant) if objects_of(mutant.file) else OfHeader(mutant, self)
        with change:
            if not change.compiles():
                return 'refused'
            if change.is_the_same_code():
                return 'same'
            for program, tests in rounds(self.programs, mutant):
                change.link(program)
                status = program.status(tests)
                if status == SANDBOX_FAILED:
                    sys.exit('the tests cannot be run apart from the rest of the system')
                if status != 0:
                    return 'endless' if status is None else 'killed'
            return 'survived'


class Change:
    """The copy with one line changed, for as long as a block lasts."""

    def __init__(self, mutant):
        self.mutant = mutant
        self.path = TREE / mutant.file
        self.original = self.path.read_text()

    def __enter__(self):
        lines = self.original.split('\n')
        line = lines[self.mutant.line - 1]
        lines[self.mutant.line - 1] = line.replace(self.mutant.old, self.mutant.new)
        self.path.write_text('\n'.join(lines))

    def __exit__(self, *_):
        self.path.write_text(self.original)


class OfHeader(Change):
    """What depends on the header is left to the build."""

    def __init__(self, mutant, folder):
        super().__init__(mutant)
        self.folder = folder

    def compiles(self):
        return self.folder.build().returncode == 0

    def is_the_same_code(self):
        return False

    def link(self, program):
        pass


class OfSource(Change):
    """Its one object is compiled, and what is run is linked, past the build, which notices nothing."""

    def __init__(self, mutant):
        super().__init__(mutant)
        self.age = self.path.stat().st_mtime_ns
        self.objects = {path: (path.read_bytes(), path.stat().st_mtime_ns)
                        for path in objects_of(mutant.file)}
        self.linked = set()

    def compiles(self):
        return all(repeat(path, warned=False) for path in self.objects)

    def is_the_same_code(self):
        return all(path.read_bytes() == content for path, (content, _) in self.objects.items())

    def link(self, program):
        wanted = {MODULE_FILE} if any(MODULE in path.parents for path in self.objects) else set()
        if any(LIBRARY in path.parents for path in self.objects):
            wanted.add(program.path)
        for path in wanted - self.linked:
            self.linked.add(path)
            if not repeat(path):
                sys.exit(f'cannot be linked: {path}')

    def __exit__(self, *_):
        super().__exit__()
        os.utime(self.path, ns=(self.age, self.age))
        for path, (content, age) in self.objects.items():
            path.write_bytes(content)
            os.utime(path, ns=(age, age))
        for path in self.linked:
            path.unlink()


@functools.cache
def command_of(path):
    """The build's command that makes a file."""
    return run('ninja', '-t', 'commands', '-s', path.relative_to(BUILD), cwd=BUILD).stdout


def repeat(path, warned=True):
    """Makes a file anew; whether that worked."""
    command = command_of(path).removeprefix('ccache ')
    if not warned:
        command = command.replace(' -Werror ', ' -w ')
    return run('sh', '-c', command, cwd=BUILD).returncode == 0


def say(text):
    print(text, flush=True)


def shown(mutant):
    return f'{mutant.file}:{mutant.line}\n    - {mutant.old}\n    + {mutant.new}'


def share(count, folders, seed):
    """By folder: its mutants in random order, and how many of them are wanted, by its lines."""
    mutants = {name: chosen(name, seed) for name in folders}
    whole, behind, wanted = sum(map(len, mutants.values())), 0, {}
    for name, own in mutants.items():
        until = behind + len(own)
        wanted[name] = count * until // whole - count * behind // whole
        behind = until
    return {name: (own, wanted[name]) for name, own in mutants.items()}


def judge(shares):
    """Tries each folder's mutants until so many were built; tells all, returns the survivors."""
    known, survivors = named(), []
    fates = collections.defaultdict(collections.Counter)
    for name, (mutants, wanted) in shares.items():
        folder = Folder(name) if wanted else None
        for mutant in mutants:
            if fates[name].total() - fates[name]['refused'] - fates[name]['same'] == wanted:
                break
            key = (mutant.file, mutant.old, mutant.new)
            fate = 'named' if key in known else folder.fate(mutant)
            fates[name][fate] += 1
            say(f'{time.strftime("%H:%M:%S")} {fate}: {shown(mutant)}')
            if fate == 'survived':
                survivors.append(mutant)
                SURVIVORS.write_text(json.dumps(survivors))
    SURVIVORS.write_text(json.dumps(survivors))
    tell(fates)
    return survivors


FATES = ['killed', 'endless', 'named', 'survived', 'same', 'refused']


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
    for file, _, old, new in json.loads(SURVIVORS.read_text()):
        found = [each for line in mutants_of(TREE, file).values() for each in line
                 if (each.old, each.new) == (old, new)]
        yield from found[:1]


def main(arguments):
    if arguments == ['--check']:
        return check_named()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # and the copy is put back
    seed = 1
    if arguments[:1] == ['--seed']:
        seed, arguments = int(arguments[1]), arguments[2:]
    HOME.mkdir(parents=True, exist_ok=True)
    lock = open(HOME / 'lock', 'w')
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except OSError:
        sys.exit(f'another run is working in {HOME}')
    copy_sources()
    configure()
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
