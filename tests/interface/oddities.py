# SPDX-License-Identifier: MIT
"""oddities.py <project>: every oddity of docs/oddities.md says in two sentences at least what it is
and what would break without it, and names a test that there is. Suites that the other pages name
as [Suite.*] are there, too."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
page = (root / 'docs/oddities.md').read_text()
tests = set()
for source in root.glob('tests/**/*.cpp'):
    tests.update(f'{suite}.{name}' for suite, name in
                 re.findall(r'^TEST(?:_F|_P)?\((\w+), (\w+)\)', source.read_text(errors='replace'),
                            re.M))

problems = []
oddities = re.findall(r'^- .*?(?=\n- |\n\n|\Z)', page, re.M | re.S)
for oddity in oddities:
    named = re.search(r'\[(\w+\.\w+)\]$', oddity)
    sentences = re.findall(r'\.(?=\s)', oddity)
    first_line = oddity.splitlines()[0]
    if not named:
        problems.append(f'names no test: {first_line}')
    elif named[1] not in tests:
        problems.append(f'there is no test {named[1]}: {first_line}')
    if len(sentences) < 2:
        problems.append(f'does not say what would break: {first_line}')

suites = {test.split('.')[0] for test in tests}
for path in sorted(root.glob('docs/*.md')):
    for suite in re.findall(r'\[(\w+)\.\*\]', path.read_text()):
        if suite not in suites:
            problems.append(f'{path.relative_to(root)}: there is no suite {suite}')
if problems:
    sys.exit('\n'.join(problems))
if len(oddities) < 40:
    sys.exit(f'only {len(oddities)} oddities read')
print(f'{len(oddities)} oddities, each with its reason and its test')
