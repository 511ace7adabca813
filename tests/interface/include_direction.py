# SPDX-License-Identifier: MIT
"""include_direction.py <project>: the folders of the library include each other in one direction
only, and only those that show something reach the seam to the desktop. The tools are applications:
they see the public headers and nothing else of the library."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])

# What each folder may include besides itself and base/, the public headers aside.
FOUNDATIONS = ['strings', 'codecs', 'dates']
ALLOWED = {
    'base': [],
    'shell': [],
    'strings': [],
    'codecs': ['strings'],
    'dates': ['strings', 'codecs'],
    'files': ['strings', 'shell'],
    'profile': ['strings', 'codecs', 'files'],
    'tables': FOUNDATIONS + ['files'],
    'platform': [],
    'draw': ['strings', 'platform'],
    'messages': ['strings', 'platform', 'draw'],
    'dialogs': FOUNDATIONS + ['tables', 'platform', 'draw', 'messages'],
}
# The public headers that each folder may use: those of the folders below it and its own.
SHARED_HEADERS = ['types', 'desktop', 'version']


def included(source):
    return re.findall(r'^\s*#\s*include\s*["<]([^">]+)', source.read_text(), re.M)


def top_of(name):
    return name.split('/')[0]


problems = []
count = 0
for source in sorted(root.glob('tools/*')):
    if source.suffix not in ('.cpp', '.h'):
        continue
    count += 1
    problems += [f'{source.relative_to(root)} includes "{name}"'
                 for name in included(source)
                 if '..' in name or (top_of(name) != 'tools' and (root / top_of(name)).is_dir())]
for folder, others in ALLOWED.items():
    for source in sorted(root.glob(f'{folder}/**/*')):
        if source.suffix not in ('.cpp', '.h', '.c'):
            continue
        count += 1
        for name in included(source):
            if '..' in name or (top_of(name) in ALLOWED
                                and top_of(name) not in [folder, 'base'] + others):
                problems.append(f'{source.relative_to(root)} includes "{name}"')
            header = re.fullmatch(r'korvel/(\w+)\.h', name)
            if header and header[1] not in SHARED_HEADERS + others + [folder]:
                problems.append(f'{source.relative_to(root)} includes <{name}>')
if problems:
    sys.exit('\n'.join(problems))
if count < 10:
    sys.exit(f'only {count} files read')
print(f'{count} files, all includes point one way')
