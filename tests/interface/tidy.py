# SPDX-License-Identifier: MIT
"""tidy.py <clang-tidy> <clang++> <build folder> <project> <folder> <part>: clang-tidy finds nothing in
the sources of the desktop module (part: module), or of the library and the examples (part: library),
nor in their headers. Tests and benchmarks are left out: they would take longer than everything else.
<folder> is for what it makes on the way."""
import json
import pathlib
import re
import shlex
import subprocess
import sys

tidy, clang, build, project, own, part = sys.argv[1:]
FOLDERS = ['base', 'shell', 'strings', 'codecs', 'dates', 'files', 'profile', 'tables', 'platform',
           'draw', 'messages', 'dialogs', 'examples']
own = pathlib.Path(own)
own.mkdir(parents=True, exist_ok=True)


def is_ours(entry):
    file = pathlib.Path(entry['file'])
    if not file.is_relative_to(project) or file.relative_to(project).parts[0] not in FOLDERS:
        return False
    return (file.relative_to(project).parts[1] == 'qt') == (part == 'module')


# The toolkit's headers, compiled once more by clang: reading them takes half of the time. Those of
# the other folders are quickly read, which shows as well that each source includes what it needs.
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
commands = [entry for entry in entries if is_ours(entry)]
toolkit = toolkit_headers() if part == 'module' else ''
for entry in commands:
    entry['command'] = re.sub(r' -Winvalid-pch -include \S+', toolkit, entry['command'])
(own / 'compile_commands.json').write_text(json.dumps(commands))


def faults(source):
    run = subprocess.run([tidy, '-p', own, '--quiet', source], capture_output=True, text=True,
                         check=False)
    if run.returncode == 0:
        return ''
    return run.stdout.strip() or run.stderr.strip() or f'{source}: clang-tidy ended early'


sources = sorted({entry['file'] for entry in commands})
found = [text for text in map(faults, sources) if text]
if found:
    sys.exit('\n'.join(found))
if len(sources) < (30 if part == 'module' else 100):
    sys.exit(f'only {len(sources)} sources looked at')
print(f'nothing found in {len(sources)} sources')
