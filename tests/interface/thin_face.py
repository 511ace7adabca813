# SPDX-License-Identifier: MIT
"""thin_face.py <project>: every exported function is a thin face over a rule of its folder: few
lines, no loop, no switch and no handler of its own. What it tells of misuse is one statement, which
is not counted."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
FOLDERS = ['base', 'shell', 'strings', 'codecs', 'dates', 'files', 'profile', 'tables', 'platform',
           'draw', 'messages', 'dialogs']
MOST_LINES = 8
# What names the function's arguments is as long as they are.
TELLING = re.compile(r'(?:lookForMisuse|if \(tellsMisuse\(\)\)\s+return outOfLine)'
                     r'\(\[[=&]\] \{.*?\}\);\n', re.S)
RULES = re.compile(r'\b(for|while|do|switch|try|catch|goto)\b')

declared = set()
for header in root.glob('include/korvel/*.h'):
    text = re.sub(r'/\*.*?\*/', '', header.read_text(), flags=re.S)
    declared.update(re.findall(r'^KORVEL_API\s+(?!extern)[^;(]*?(\w+)\s*\(', text, re.M))


def body(text, start):
    """What stands between the brace at `start` and the one that closes it."""
    depth = 0
    for at in range(start, len(text)):
        depth += {'{': 1, '}': -1}.get(text[at], 0)
        if depth == 0:
            return text[start + 1:at]
    sys.exit(f'no end of the function at {text[start - 40:start]}')


problems = []
defined = set()
for folder in FOLDERS:
    for source in sorted(root.glob(f'{folder}/**/*.cpp')):
        # Comments, texts and characters may hold anything.
        code = re.sub(r'//[^\n]*|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', '0',
                      source.read_text(encoding='utf-8'))
        for match in re.finditer(r'^\w[\w *]*?\b(\w+)\([^;{}]*?\)\s*(?:noexcept\s*)?\{', code, re.M):
            name = match[1]
            if name not in declared:
                continue
            defined.add(name)
            inner = body(code, match.end() - 1)
            counted = TELLING.sub('\n', inner, count=1)
            lines = [line for line in counted.splitlines() if line.strip()]
            if len(lines) > MOST_LINES:
                problems.append(f'{source.relative_to(root)}: {name} has {len(lines)} lines')
            if RULES.search(inner):
                problems.append(f'{source.relative_to(root)}: {name} holds a rule')
problems += [f'{name}: no definition found' for name in sorted(declared - defined)]
if problems:
    sys.exit('\n'.join(problems) + f'\n{len(problems)} to mend')
if len(declared) < 200:
    sys.exit(f'only {len(declared)} functions read')
print(f'{len(declared)} exported functions are thin')
