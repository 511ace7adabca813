# SPDX-License-Identifier: MIT
"""tidy.py <clang-tidy> <clang++> <build folder> <project> <folder> <part>: clang-tidy finds nothing in
the sources of the desktop module (part: module), or of the library, the tools and the examples
(part: library), nor in their headers. Tests and benchmarks are left out: they would take longer than
everything else. <folder> is for what it makes on the way.

A source's time is mostly that of its headers. So those of a folder are looked at together, as one
source that includes them; where two of them have a name twice, each half of them. Sources in C, which
are quickly read and may ask for a standard in front of their headers, are looked at one by one."""
import collections
import json
import pathlib
import re
import shlex
import subprocess
import sys

tidy, clang, build, project, own, part = sys.argv[1:]
FOLDERS = ['base', 'shell', 'strings', 'codecs', 'dates', 'files', 'profile', 'tables', 'platform',
           'draw', 'messages', 'dialogs', 'tools', 'examples']
own = pathlib.Path(own)
own.mkdir(parents=True, exist_ok=True)


def is_ours(entry):
    file = pathlib.Path(entry['file'])
    if not file.is_relative_to(project) or file.relative_to(project).parts[0] not in FOLDERS:
        return False
    return (file.relative_to(project).parts[1] == 'qt') == (part == 'module')


# The toolkit's headers, compiled once more by clang: reading them takes half of the time.
def toolkit_headers():
    entry = next(entry for entry in entries if 'korvel_qt.dir/cmake_pch.hxx.gch' in entry['command'])
    words = [word for word in shlex.split(entry['command']) if word not in ('-Werror', '-Winvalid-pch')]
    words[0] = clang
    words[words.index('-o') + 1] = str(own / 'toolkit.pch')
    # The header itself: beside it stands what the other compiler made of it.
    words[words.index('-c') + 1] = words.pop(words.index('-include') + 1)
    words.remove('-include')
    subprocess.run(words, check=True, cwd=entry['directory'])
    return f' -include-pch {own}/toolkit.pch'


entries = json.loads((pathlib.Path(build) / 'compile_commands.json').read_text())
toolkit = toolkit_headers() if part == 'module' else ''
settings = pathlib.Path(project, 'platform/qt' if part == 'module' else '', '.clang-tidy')
sources = collections.defaultdict(set)  # of a folder, that are compiled alike: how they are
for entry in filter(is_ours, entries):
    command = re.sub(r' -Winvalid-pch -include \S+', toolkit, entry['command'])
    command = re.sub(r' -o \S+ -c \S+$', '', command)
    file = pathlib.Path(entry['file'])
    sources[file if file.suffix == '.c' else file.parent, command].add(file)


def one_of(files):
    """One source that includes these."""
    if not files[1:]:
        return files[0]
    whole = own / f'together{files[0].suffix}'
    whole.write_text(''.join(f'#include "{file}"  // NOLINT\n' for file in files))
    return whole


def faults(files, words):
    source = one_of(files)
    if files[1:] and subprocess.run([clang, '-fsyntax-only', '-w', *words, source],
                                    capture_output=True, check=False).returncode:
        half = len(files) // 2
        return faults(files[:half], words) + faults(files[half:], words)
    run = subprocess.run([tidy, '--quiet', f'--config-file={settings}', source, '--', *words],
                         capture_output=True, text=True, check=False)
    if run.returncode == 0:
        return ''
    return run.stdout or run.stderr or f'{files}: clang-tidy ended early\n'


def words_of(command):
    """Of names that hide each other the compilers tell: together, sources hide each other's."""
    return [word for word in shlex.split(command)[1:] if word != '-Wshadow']


found = ''.join(faults(sorted(files), words_of(command))
                for (_, command), files in sources.items())
if found:
    sys.exit(found)
count = sum(map(len, sources.values()))
if count < (30 if part == 'module' else 100):
    sys.exit(f'only {count} sources looked at')
print(f'nothing found in {count} sources')
