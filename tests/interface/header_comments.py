# SPDX-License-Identifier: MIT
"""header_comments.py <include folder>: every declaration of the public headers has a comment:
beside it, above it, or above the declarations that it follows without an empty line."""
import pathlib
import re
import sys

uncommented = []
count = 0
for header in sorted(pathlib.Path(sys.argv[1]).glob('korvel/*.h')):
    text = re.sub(r'^#.*$', '', header.read_text(), flags=re.M)
    text = re.sub(r'/\*.*?\*/', '/* */', text, flags=re.S)
    for paragraph in re.split(r'\n\n+', text):
        declared = re.findall(r'^(?:KORVEL_API|typedef|enum)\b.*$', paragraph, re.M)
        count += len(declared)
        if not paragraph.lstrip().startswith('/*'):
            uncommented += [f'{header.name}: {line}' for line in declared if '/*' not in line]
if uncommented:
    sys.exit('no comment:\n' + '\n'.join(uncommented))
if count < 400:
    sys.exit(f'only {count} declarations read')
print(f'{count} declarations, each with a comment')
