# SPDX-License-Identifier: MIT
"""misuse.py <project>: each function of the public headers that can fail by an application's mistake
tells so: a test reads its line, or silent_functions.txt says why there is none. So does each value
that it returns when it fails: a row EXPECT_FAILS(call, value, line) has it, or ordinary_answers.txt
says why no line goes with it. Each kind of line that the library has is on the page about them,
too."""
import pathlib
import re
import sys

from failing_values import failing_values

root = pathlib.Path(sys.argv[1])
here = pathlib.Path(__file__).parent

comments = {}  # of each function, what stands in front of it
for header in sorted(root.glob('include/korvel/*.h')):
    text = header.read_text(encoding='utf-8')
    for paragraph in re.split(r'\n\n+', text):
        comment = ' '.join(re.findall(r'/\*(.*?)\*/', paragraph, re.S))
        code = re.sub(r'/\*.*?\*/', '', paragraph, flags=re.S)
        for name in re.findall(r'^KORVEL_API\s+(?!extern)[^;(]*?(\w+)\s*\(', code, re.M):
            comments[name] = comment

# Rows whose line names the function, and calls that are written out for lines of several parts.
told = set()
rows = 0
for test in sorted(root.glob('tests/*/misuse_test.cpp')):
    text = test.read_text(encoding='utf-8')
    for name, rest in re.findall(r'EXPECT_(?:TOLD|FAILS)\(\s*(\w+)\((.*?)\);\n', text, re.S):
        rows += 1
        if f'"{name}(' in rest:
            told.add(name)
    for name in re.findall(r'"(?:korvel: )?(\w+)\(', text):
        if f'{name}(' in re.sub(r'"(?:\\.|[^"\\])*"', '', text):
            told.add(name)

silent = {}
for line in (here / 'silent_functions.txt').read_text(encoding='utf-8').splitlines():
    if line and not line.startswith('#'):
        names, reason = line.split(': ', 1)
        silent.update({name: reason for name in names.split(', ')})

problems = [f'{name}: no test reads a line of it, and silent_functions.txt does not say why'
            for name in sorted(set(comments) - told - set(silent))]
problems += [f'{name} is in silent_functions.txt, and tells'
             for name in sorted(set(silent) & told)]
problems += [f'{name}, in silent_functions.txt, is no function'
             for name in sorted(set(silent) - set(comments))]



def arguments(text):
    """The arguments at the beginning of a text, as C separates them, up to their ')'."""
    depth, found = 0, ['']
    for token in re.findall(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])+\'|.', text, re.S):
        depth += (token in '([{') - (token in ')]}')
        if depth < 0:
            return [argument.strip() for argument in found]
        if token == ',' and depth == 0:
            found.append('')
        else:
            found[-1] += token
    raise ValueError(text[:80])


failed = set()  # functions and values, of rows whose line names the function
for test in sorted(root.glob('tests/*/misuse_test.cpp')):
    for row in test.read_text(encoding='utf-8').split('EXPECT_FAILS(')[1:]:
        call, value, line = arguments(row)
        name = re.match(r'"(\w+)\(', line)
        if name and f'{name.group(1)}(' in call:
            failed.add((name.group(1), {'nullptr': 'null'}.get(value, value.replace(' ', ''))))

ordinary = {}
for line in (here / 'ordinary_answers.txt').read_text(encoding='utf-8').splitlines():
    if line and not line.startswith('#'):
        answers, reason = line.split(': ', 1)
        for answer in answers.split(', '):
            name, *values = answer.split(' ')
            ordinary.update({(name, value): reason for value in values})

failing = {(name, value) for name, values in failing_values(root).items() for value in values
           if name not in silent}
problems += [f'{name} can return {value}: no row EXPECT_FAILS has it, and ordinary_answers.txt does '
             f'not say why' for name, value in sorted(failing - failed - set(ordinary))]
problems += [f'{name} returns {value} with a line, and ordinary_answers.txt has it'
             for name, value in sorted(failed & set(ordinary))]
problems += [f'{name} {value} in ordinary_answers.txt is no failing value of the headers'
             for name, value in sorted(set(ordinary) - failing)]

# What a header says of a call that fails: no function may do so in silence.
FAILS = re.compile(r'Returns (?:null|-1)\b|, or -1\b|-1 (?:for|when|if)\b|does nothing and returns')
problems += [f'{name} has a failing value, and is in silent_functions.txt'
             for name in sorted(silent) if FAILS.search(re.sub(r'\s+', ' ', comments.get(name, '')))]

page = re.sub(r'\s+', ' ', (root / 'docs/debugging.md').read_text(encoding='utf-8'))
folders = sorted(path.parent.name for path in root.glob('*/misuse.cpp'))
problems += [f'docs/debugging.md says nothing of {folder}/' for folder in folders
             if f'{folder}.h' not in page and folder not in ('base',)]

if problems:
    sys.exit('\n'.join(problems) + f'\n{len(problems)} to mend')
if len(comments) < 240 or rows < 250 or len(told) < 200 or \
        len(failing) < 200 or len(failed) < 120:
    sys.exit(f'only {len(comments)} functions, {rows} rows, {len(told)} functions that tell, '
             f'{len(failing)} failing values, {len(failed)} with a line read')
print(f'{len(told)} of {len(comments)} functions tell, {len(silent)} have nothing to tell; '
      f'{len(failing & failed)} of {len(failing)} failing values have a line')
