# SPDX-License-Identifier: MIT
"""exported_names.py <nm> <library> <include folder>: the dynamic symbols of the library are the
names that the public headers declare with the export macro, no more and no fewer."""
import pathlib
import re
import subprocess
import sys

nm, library, include = sys.argv[1:]

declared = set()
for header in pathlib.Path(include).glob('korvel/*.h'):
    text = re.sub(r'/\*.*?\*/', '', header.read_text(), flags=re.S)
    for declaration in re.findall(r'^KORVEL_API\s+([^;]*);', text, re.M):
        # The name stands before the parameters of a function, or before the bounds of an array.
        before = re.split(r'\(', declaration, maxsplit=1)[0]
        name = re.search(r'(\w+)\s*(?:\[[^\]]*\]\s*)*$', before.strip())
        if '(*' in declaration and declaration.startswith('extern'):
            name = re.search(r'\(\*\s*(\w+)', declaration)
        if not name:
            sys.exit(f'cannot read the declaration: {declaration}')
        declared.add(name.group(1))

# The sanitizers add symbols of their own, all of them reserved names.
reserved = re.compile(r'^(_|__|\.)')
listing = subprocess.run([nm, '-D', '--defined-only', library], capture_output=True, text=True,
                         check=True).stdout
exported = {line.split()[-1].split('@')[0] for line in listing.splitlines() if line}
if 'asan' in subprocess.run([nm, '-D', library], capture_output=True, text=True,
                            check=True).stdout:
    exported = {name for name in exported if not reserved.match(name)}

missing, surplus = declared - exported, exported - declared
if missing or surplus:
    sys.exit('declared but not exported: ' + ' '.join(sorted(missing)) +
             '\nexported but not declared: ' + ' '.join(sorted(surplus)))
if len(declared) < 100:
    sys.exit(f'only {len(declared)} names found in the headers: the check reads them wrongly')
print(f'{len(declared)} names declared and exported')
