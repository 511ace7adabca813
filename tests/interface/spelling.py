# SPDX-License-Identifier: MIT
"""spelling.py <project> [--add]: every word of the documentation and of the comments in the public
headers is one of English (as hunspell knows it), or of docs/words. With --add the words that are
neither are added to docs/words, for somebody to look at.

Code is no text: blocks, what stands between backticks or quotes, links, declared names, and names
with digits, lines below or capitals inside."""
import pathlib
import re
import shutil
import subprocess
import sys

root = pathlib.Path(sys.argv[1])
if not shutil.which('hunspell') or subprocess.run(
        ['hunspell', '-d', 'en_GB', '-l'], input='', text=True, capture_output=True,
        check=False).returncode != 0:
    print('there is no hunspell, or not its English dictionary')
    sys.exit(77)

PAGES = ['*.md', 'docs/**/*.md', 'examples/**/*.md', 'data/**/*.md', 'tools/**/*.md']
WORD = re.compile(r"(?<![\w./\\@-])[^\W\d_]+(?:['’][^\W\d_]+)*(?![\w/@]|\.\w)")


def prose(page):
    text = re.sub(r'^```.*?^```|^<!--.*?-->|^    .*$', ' ', page, flags=re.M | re.S)
    text = re.sub(r'(`+).+?\1|\]\([^)]*\)|<[^>]*>|https?:\S+|\[\w+\.[\w*]+\]', ' ', text)
    return re.sub(r'"[^"\n]{0,80}"|“[^”]*”', ' ', text)


def comments(header):
    lines = ' '.join(re.findall(r'/\*(.*?)\*/', header, re.S)).splitlines()
    return re.sub(r'"(?:\\.|[^"\\])*"|\'[^\']\'', ' ',
                  '\n'.join(line for line in lines if '->' not in line))


def words(text):
    """Words of three letters or more, the plurals of abbreviations and genitives as their own."""
    found = {re.sub(r"['’]s?$", '', word) for word in WORD.findall(text)}
    return {word for word in found
            if len(word) > 2 and not re.search(r'[a-z][A-Z]', word) and not word.isupper()}


texts = {path: words(prose(path.read_text())) for pattern in PAGES
         for path in sorted(root.glob(pattern))}
headers = {path: path.read_text() for path in root.glob('include/korvel/*.h')}
texts |= {path: words(comments(text)) for path, text in headers.items()}
declared = {word for text in headers.values()
            for word in re.findall(r'\w+', re.sub(r'/\*.*?\*/', '', text, flags=re.S))}
known = pathlib.Path(root / 'docs/words')
own = set(known.read_text().split())
asked = '\n'.join(sorted(set().union(*texts.values()) - own - declared))
unknown = set(subprocess.run(['hunspell', '-d', 'en_GB', '-i', 'utf-8', '-l'], input=asked,
                             text=True, capture_output=True, check=True).stdout.split())
if '--add' in sys.argv:
    known.write_text('\n'.join(sorted(own | unknown, key=lambda word: (word.lower(), word))) + '\n')
elif unknown:
    for path, found in texts.items():
        for word in sorted(found & unknown):
            print(f'{path.relative_to(root)}: {word}')
    sys.exit('what is right goes into docs/words (tests/interface/spelling.py . --add)')
read = set().union(*texts.values())
if len(read) < 2000:
    sys.exit(f'only {len(read)} words read')
print(f'{len(read)} words, {len(own)} of them of our own')
