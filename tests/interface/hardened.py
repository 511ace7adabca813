# SPDX-License-Identifier: MIT
"""hardened.py <readelf> <objdump> <library> <module>: reads out of the built files that the library
and its desktop module are hardened, and that the module exports its one entry."""
import re
import subprocess
import sys

readelf, objdump, library, module = sys.argv[1:]


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def exported(path):
    """Name to address of the functions that a file exports."""
    rows = (line.split() for line in output(readelf, '--dyn-syms', '-W', path).splitlines())
    return {row[7].split('@')[0]: int(row[1], 16) for row in rows
            if len(row) == 8 and row[3] in ('FUNC', 'OBJECT', 'NOTYPE') and row[6] != 'UND' and
            row[4] != 'LOCAL'}


problems = []
for path in library, module:
    dynamic = output(readelf, '-dW', path)
    segments = output(readelf, '-lW', path)
    symbols = output(readelf, '--dyn-syms', '-W', path)
    promises = {
        'is bound when it is loaded': re.search(r'\(FLAGS(_1)?\).*\b(BIND_)?NOW\b', dynamic),
        'has read-only relocations': 'GNU_RELRO' in segments,
        'has no executable stack': re.search(r'GNU_STACK.* RW\s', segments),
        'has no search path of its own': not re.search(r'\((RPATH|RUNPATH)\)', dynamic),
        'checks its stacks': '__stack_chk_fail' in symbols,
    }
    if path == library:  # the module makes no call with a form that checks
        promises['checks its buffers'] = re.search(r'__\w+_chk@', symbols)
    problems += [f'{path} no longer {promise}' for promise, holds in promises.items() if not holds]

# An indirect call may only land where a function says so.
if 'X86-64' in output(readelf, '-hW', library).upper().replace('ADVANCED MICRO DEVICES ', ''):
    code = output(objdump, '-d', '--no-show-raw-insn', library)
    entries = re.findall(r'^[0-9a-f]+ <(\w+)>:\n\s+[0-9a-f]+:\s+(\w+)', code, re.M)
    marked = {name for name, instruction in entries if instruction == 'endbr64'}
    functions = {name for name, _ in entries} & set(exported(library))
    if len(functions) < 200:
        problems.append(f'only {len(functions)} exported functions found in the code')
    problems += [f'{name} does not begin with a landing mark' for name in functions - marked]

if set(exported(module)) != {'korvel_desktop'}:
    problems.append(f'{module} exports {sorted(exported(module))}')
if problems:
    sys.exit('\n'.join(problems))
print('library and module are hardened')
