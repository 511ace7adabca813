# SPDX-License-Identifier: MIT
"""reference.py <doxygen> <project> <scratch folder>: the reference tells each public name, finds it,
and has a man page for each function; a function or a variable that nobody has documented is an error;
and it is the same wherever and whenever it is made."""
import filecmp
import os
import pathlib
import re
import shutil
import subprocess
import sys

doxygen, project, scratch = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
if not doxygen or doxygen.endswith('-NOTFOUND'):
    print('there is no doxygen')
    sys.exit(77)
shutil.rmtree(scratch, ignore_errors=True)


def build(source, folder, **environment):
    return subprocess.run(
        [sys.executable, '-B', source / 'docs/reference/build.py', doxygen, folder, '9.8.7', 'A text'],
        env=os.environ | environment, stderr=subprocess.PIPE, text=True, check=False)


def files_of(folder):
    return sorted(path.relative_to(folder) for path in folder.rglob('*') if path.is_file())


problems = []
made = scratch / 'made'
run = build(project, made)
if run.returncode != 0:
    sys.exit(run.stderr)

# What is declared, read otherwise than the reference reads it.
names, functions = set(), set()
for header in (project / 'include/korvel').glob('*.h'):
    text = re.sub(r'/\*.*?\*/', '', header.read_text(), flags=re.S)
    functions |= set(re.findall(r'^KORVEL_API (?!extern)[^(]*?(\w+)\(', text, re.M))
    names |= set(re.findall(r'^KORVEL_API extern [^;]*?(\w+)(?:\[\d+\])*;', text, re.M))
    for constants in re.findall(r'^enum \{(.*?)\}', text, re.M | re.S):
        names |= set(re.findall(r'(\w+)(?: = [^,]*)?(?:,|$)', constants.strip()))
    names |= set(re.findall(r'^typedef .*?\(\*(\w+)\)', text, re.M))
    names |= set(re.findall(r'^typedef struct (\w+) \{', text, re.M))
index = '\n'.join(path.read_text() for path in (made / 'html/search').glob('*.js'))
found = set(re.findall(r"\['\w+',\['(\w+)',", index))
problems += [f'the search finds no {name}' for name in sorted((names | functions) - found)]
problems += [f'there is no man page of {name}' for name in sorted(functions)
             if not (made / f'man3/{name}.3').exists()]
# What a page says is returned stands under its own heading, unless the page begins with it.
for name in sorted(functions):
    page = made / f'man3/{name}.3'
    text = page.read_text() if page.exists() else ''
    told = text.partition('.SH DESCRIPTION\n')[2]
    if re.search(r'\bReturns\b', told) and not told.startswith('Returns') and \
            '\n.SH RETURN VALUE\n' not in told:
        problems.append(f'{name}(3) has no RETURN VALUE')
if len(functions) < 290 or len(names) < 250:
    problems.append(f'only {len(functions)} functions and {len(names)} other names read')

# Elsewhere and in another time zone.
copy = scratch / 'copy'
for folder in ('include', 'docs'):
    shutil.copytree(project / folder, copy / folder)
again = scratch / 'again'
build(copy, again, TZ='Asia/Tokyo', LC_ALL='C')
if files_of(made) != files_of(again):
    problems.append('another build has other files')
_, different, _ = filecmp.cmpfiles(made, again, files_of(made), shallow=False)
problems += [f'{path} is another one in another build' for path in different]

# A header alone, with a function and a variable that nobody has documented.
for path in [*copy.glob('docs/**/*.md'), *copy.glob('include/korvel/*.h')]:
    if path.name != 'profile.h':
        path.unlink()
profile = copy / 'include/korvel/profile.h'
bare = ('undocumented_call', 'undocumented_value')
profile.write_text(profile.read_text().replace(
    '#ifdef __cplusplus\n}', f'\nKORVEL_API int {bare[0]}(void);\n\n'
    f'KORVEL_API extern int {bare[1]};\n\n#ifdef __cplusplus\n}}'))
run = build(copy, again)
problems += [f'{name} is no error' for name in bare
             if run.returncode == 0 or name not in run.stderr]

if problems:
    sys.exit('\n'.join(problems[:50]))
print(f'{len(functions)} functions and {len(names)} other names')
