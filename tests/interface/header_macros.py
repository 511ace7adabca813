# SPDX-License-Identifier: MIT
"""header_macros.py <cc> <include folder>: the public headers leave no macro behind but their
guards, the export macro and documented constants (a constant has a comment right above it or
beside it)."""
import pathlib
import re
import subprocess
import sys

compiler, include = sys.argv[1], pathlib.Path(sys.argv[2])


def macros(source):
    result = subprocess.run([compiler, '-std=c99', '-dM', '-E', '-I', str(include), '-x', 'c', '-'],
                            input=source, capture_output=True, text=True, check=True)
    return {re.match(r'#define (\w+)', line).group(1) for line in result.stdout.splitlines()}


allowed = {'KORVEL_API'}
for header in include.glob('korvel/*.h'):
    text = header.read_text()
    allowed.add(f'KORVEL_{header.stem.upper()}_H')
    allowed |= set(re.findall(r'\*/\n#define (\w+) ', text))
    allowed |= set(re.findall(r'^#define (\w+) .*/\*', text, re.M))

standard = set()
for name in re.findall(r'#include <((?!korvel/)[\w/.]+)>',
                       ''.join(h.read_text() for h in include.glob('korvel/*.h'))):
    standard |= macros(f'#include <{name}>\n')
left = macros('#include <korvel/korvel.h>\n') - macros('') - standard - allowed
if left:
    sys.exit('macros left behind: ' + ' '.join(sorted(left)))
print(f'{len(allowed)} macros, all of them allowed')
