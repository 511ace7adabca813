# SPDX-License-Identifier: MIT
"""reserved_names.py <nm> <library> <README> [write]: the README lists the exported variables of the
library, whose names are reserved. With "write" the list is made anew."""
import pathlib
import re
import subprocess
import sys
import textwrap

BLOCK = re.compile(r'(?<=<!-- reserved -->\n```\n).*?(?=\n```\n)', re.S)

nm, library, page = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
listing = subprocess.run([nm, '-D', '--defined-only', library], capture_output=True, text=True,
                         check=True).stdout
symbols = [line.split()[-2:] for line in listing.splitlines()]
names = sorted((name for kind, name in symbols if kind in 'BDR' and name[0] != '_'), key=str.lower)
if len(names) < 100:
    sys.exit(f'only {len(names)} variables found in the library')
wanted = textwrap.fill(' '.join(names), 100)

text = page.read_text()
listed = BLOCK.search(text)
if not listed:
    sys.exit(f'{page.name} has no list of reserved names')
if sys.argv[4:] == ['write']:
    page.write_text(BLOCK.sub(wanted, text))
elif listed[0] != wanted:
    missing, surplus = set(names) - set(listed[0].split()), set(listed[0].split()) - set(names)
    sys.exit(f'{page.name} is to list the reserved names anew (see {sys.argv[0]}), missing: '
             f'{" ".join(sorted(missing))}, no longer there: {" ".join(sorted(surplus))}')
print(f'{len(names)} reserved names, all listed')
