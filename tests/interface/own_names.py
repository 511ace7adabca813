# SPDX-License-Identifier: MIT
"""own_names.py <include folder> <output>: writes a C source that defines a function of each name
that the public headers declare as a function's. Each ends the program with its name on standard
error."""
import pathlib
import re
import sys

names = set()
for header in pathlib.Path(sys.argv[1]).glob('korvel/*.h'):
    text = re.sub(r'/\*.*?\*/', '', header.read_text(), flags=re.S)
    names |= set(re.findall(r'^KORVEL_API (?!extern\b)[\w *]*?(\w+)\(', text, re.M))
if len(names) < 200:
    sys.exit(f'only {len(names)} functions read from the headers')

FRAME = '''/* Functions of the application's own, with the names of the library's. */
#include <stdio.h>
#include <stdlib.h>

#define OWN(name)                     \\
  void name(void);                    \\
  void name(void) {                   \\
    fputs("called: " #name "\\n", stderr); \\
    _Exit(3);                         \\
  }

'''
pathlib.Path(sys.argv[2]).write_text(
    FRAME + ''.join(f'OWN({name})\n' for name in sorted(names)))
