# SPDX-License-Identifier: MIT
"""own_calls.py <readelf> <include folder> <object>...: no code of the library calls an exported
function, its own or another folder's. An application may define a function of the same name, and a
rule of the library must not end there. Addresses of exported functions may be taken: a validator's
is compared with what the application sees."""
import collections
import pathlib
import re
import subprocess
import sys

readelf, include, *objects = sys.argv[1:]

functions = set()
for header in pathlib.Path(include).glob('korvel/*.h'):
    text = re.sub(r'/\*.*?\*/', '', header.read_text(), flags=re.S)
    functions.update(re.findall(r'^KORVEL_API\s+(?!extern)[^;(]*?(\w+)\s*\(', text, re.M))

# How x86-64 and 64-bit ARM code names what it jumps to.
JUMPS = re.compile(r'R_(X86_64_(PLT32|PC32|PLTOFF64)|AARCH64_(CALL26|JUMP26))$')

calls = collections.defaultdict(set)
addresses = 0
for path in objects:
    listing = subprocess.run([readelf, '-rW', path], capture_output=True, text=True, check=True)
    for line in listing.stdout.splitlines():
        fields = line.split()
        if len(fields) < 5 or fields[4].split('@')[0] not in functions:
            continue
        if JUMPS.match(fields[2]):
            calls[path].add(fields[4])
        else:
            addresses += 1

problems = [f'{pathlib.Path(path).name} calls {", ".join(sorted(names))}'
            for path, names in sorted(calls.items())]
if problems:
    sys.exit('\n'.join(problems))
if len(functions) < 100 or len(objects) < 50 or addresses == 0:
    sys.exit(f'only {len(functions)} functions, {len(objects)} objects, {addresses} addresses read')
print(f'{len(objects)} objects call none of the {len(functions)} exported functions')
