# SPDX-License-Identifier: MIT
"""one_hand.py <project>: what a script can hold of one hand in all folders. Every source says first
its licence and what it does, guards are named after their paths, private headers are included only
by those they name and by tests and benchmarks, and each sentence marked "Kept:" stands in a test,
too."""
import fnmatch
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
LIBRARY = ['base', 'shell', 'strings', 'codecs', 'dates', 'files', 'profile', 'tables', 'platform',
           'draw', 'messages', 'dialogs']
OTHERS = ['include', 'tests', 'bench', 'docs', 'examples', 'tools']
SUFFIXES = ('.cpp', '.h', '.c')

texts = {path.relative_to(root).as_posix(): path.read_text(encoding='utf-8', errors='replace')
         for folder in LIBRARY + OTHERS for path in sorted(root.glob(f'{folder}/**/*'))
         if path.suffix in SUFFIXES}
problems = []

LICENCE = re.compile(r'(?:#![^\n]*\n)?(?://|/\*|#) SPDX-License-Identifier: MIT(?: \*/)?\n')
FLAT = ['scripts', '.ci', '.']  # without what is below
scripts = [path for folder in LIBRARY + OTHERS + ['cmake', 'debian'] + FLAT for path in
           root.glob(f'{folder}/*' if folder in FLAT else f'{folder}/**/*')
           if path.name == 'CMakeLists.txt' or path.suffix in ('.cmake', '.map', '.py', '.sh') or
           path.name.endswith(('.cmake.in', '.pc.in')) or
           path.is_file() and path.suffix == '' and path.read_bytes().startswith(b'#!')]
for path in scripts:
    if not LICENCE.match(path.read_text(encoding='utf-8', errors='replace')):
        problems.append(f'{path.relative_to(root)} does not say its licence first')
if len(scripts) < 80:
    problems.append(f'only {len(scripts)} scripts and build files were looked at')
for name, text in texts.items():
    licence = LICENCE.match(text)
    if not licence:
        problems.append(f'{name} does not say its licence first')
    texts[name] = text[licence.end():] if licence else text


def opening(text):
    """The comment that a source begins with, or an empty text."""
    block = re.match(r'(?://[^\n]*\n)+|/\*.*?\*/', text, re.S)
    return block.group(0) if block else ''


def guard(name):
    # An application's own headers, as examples and guide show them, are guarded by its own names.
    path = re.sub(r'^(examples|docs|include/korvel)/', '', name)
    prefix = '' if name.startswith(('examples/', 'docs/')) else 'KORVEL_'
    return prefix + re.sub(r'\W', '_', path).upper()


included = {name: re.findall(r'^\s*#\s*include\s+"([^"]+)"', text, re.M)
            for name, text in texts.items()}


def words(text):
    """The words of a source, its comment marks left out."""
    return re.sub(r'\s+', ' ', re.sub(r'^\s*(?://+|\*)|/\*|\*/', ' ', text, flags=re.M))


for name, text in texts.items():
    if not opening(text):
        problems.append(f'{name} does not begin with what it does')
    if name.endswith('.h') and f'#ifndef {guard(name)}\n#define {guard(name)}\n' not in text:
        problems.append(f'{name} is not guarded by {guard(name)}')
    if re.search(r'^\s*using namespace (?!korvel\b|std::\w*literals)', text, re.M):
        problems.append(f'{name} takes in a namespace that is not ours')
    if name.endswith('.h') and re.search(r'^using namespace', text, re.M):
        problems.append(f'{name} is a header and takes in a namespace')

# Private headers and their readers: folders, or files by their names. Tests and benchmarks may
# include every one and are not named.
PLACE = r'(?!tests/|bench/)[a-z]+/(?:[a-z]+/)*(?:[\w*]+\.(?:cpp|h))?'
FOR = rf'// For ((?:{PLACE}(?:, {PLACE})* and )?{PLACE}): \S'
private = 0
for name, text in texts.items():
    if name.split('/')[0] not in LIBRARY or not name.endswith('.h'):
        continue
    private += 1
    readers = re.match(FOR, re.sub(r'\n//', '', opening(text)))
    if not readers:
        problems.append(f'{name} does not begin with "// For a/, b/ and c/: what."')
        continue
    named = re.split(', | and ', readers[1])
    patterns = [place + '*' if place.endswith('/') else place for place in named]
    problems += [f'{place}, in {name}, is no folder or file'
                 for place, pattern in zip(named, patterns) if not fnmatch.filter(texts, pattern)]
    patterns += ['tests/*', 'bench/*']
    problems += [f'{other} includes {name}, which is for {readers[1]}'
                 for other, headers in included.items()
                 if name in headers and
                 not any(fnmatch.fnmatchcase(other, pattern) for pattern in patterns)]

# An application's programmer cannot know the mark of the sentences below.
problems += [f'{name} says "Kept:"' for name, text in texts.items()
             if name.startswith('include/korvel/') and 'Kept:' in text]

# Sentences that are promises of oddities. What stands in front of a comment may hold strings.
CODE = r'(?:"(?:\\.|[^"\\\n])*"|\'"\'|(?!//)[^"\n])*'
tested = words(' '.join(text for name, text in texts.items() if name.startswith('tests/')))
kept = 0
for name, text in texts.items():
    if name.split('/')[0] not in LIBRARY:
        continue
    sentences = []
    for comment in re.findall(rf'(?:^{CODE}//[^\n]*\n)+', text, re.M):
        plain = words(re.sub(rf'^{CODE}//', ' ', comment, flags=re.M))
        sentences += [sentence.strip() for sentence in re.findall(r'Kept: ([^.]*)', plain)]
    kept += len(sentences)
    problems += [f'{name}: in no test: "Kept: {sentence}"'
                 for sentence in sentences if sentence not in tested]
    if len(sentences) != text.count('Kept:'):
        problems.append(f'{name} says "Kept:" {text.count("Kept:")} times, '
                        f'{len(sentences)} of them at the head of a sentence in a // comment')

if problems:
    sys.exit('\n'.join(problems) + f'\n{len(problems)} to mend')
if len(texts) < 300 or private < 60 or kept < 40:
    sys.exit(f'only {len(texts)} files, {private} private headers, {kept} sentences read')
print(f'{len(texts)} files, {private} private headers and {kept} kept oddities are as agreed')
