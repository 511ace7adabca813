# SPDX-License-Identifier: MIT
"""pages.py [--renew] <pages> [<folder of play>]: each page of the guide shows the whole of its
program and its picture, and, where the folder is given, what the program printed there. With --renew
the pages are made so.

What a page shows of a file stands in a block below the file's name: <!-- first_dialog.c -->. The
names of programs and headers are those of the pages' folder; <name>.txt is what a program printed."""
import pathlib
import re
import sys

BLOCK = re.compile(r'(<!-- ([\w.]+) -->\n```\w+\n)(.*?)(```\n)', re.S)

arguments = [argument for argument in sys.argv[1:] if argument != '--renew']
renew = '--renew' in sys.argv
pages = pathlib.Path(arguments[0])
printed = pathlib.Path(arguments[1]) if len(arguments) > 1 else None


def shown(name):
    """What a page has to show of a file, without the line of its licence; nothing where that is not
    known."""
    if name.endswith('.txt'):
        return (printed / name).read_text() if printed else None
    return (pages / name).read_text().split('\n', 1)[1]


problems = []
sources = {path.name for path in pages.iterdir() if path.suffix in ('.c', '.cpp', '.h')}
for page in sorted(pages.glob('*.md')):
    text = page.read_text()
    blocks = BLOCK.findall(text)
    if renew:
        text = BLOCK.sub(lambda block: block[1] + (shown(block[2]) or block[3]) + block[4], text)
        page.write_text(text)
    for _, name, content, _ in [] if renew else blocks:
        if shown(name) not in (content, None):
            problems.append(f'{page.name} does not show {name} as it is')
    sources -= {name for _, name, _, _ in blocks}
    if page.name == 'README.md':
        continue
    if f']({page.stem}.png)' not in text or not (pages / f'{page.stem}.png').exists():
        problems.append(f'{page.name} does not show {page.stem}.png')
    if f']({page.name})' not in (pages / 'README.md').read_text():
        problems.append(f'README.md does not lead to {page.name}')
    if page.stem not in {pathlib.Path(name).stem for _, name, _, _ in blocks}:
        problems.append(f'{page.name} shows no program')
problems += [f'no page shows {name}' for name in sorted(sources)]
if problems:
    problems.append('RENEW=1 ctest --preset release -R guide.programs renews what the pages show')
    sys.exit('\n'.join(problems))
