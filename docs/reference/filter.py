# SPDX-License-Identifier: MIT
"""filter.py <file>: a public header or a page as Doxygen is to read it: the header's comments in
its own form, the page without links to what is not part of the reference."""
import functools
import pathlib
import re
import sys

import headers

ROOT = pathlib.Path(__file__).resolve().parents[2]
MAIN = ROOT / 'docs/guide/README.md'
# What is told to whoever works on the library itself is not in the reference.
PAGES = {*ROOT.glob('docs/guide/*.md'), *ROOT.glob('docs/*.md')} - {
    ROOT / 'docs' / name for name in ('architecture.md', 'conventions.md', 'performance.md')}


@functools.cache
def declared():
    """The names in whose place a link is wanted: those that are no words."""
    names = {name for path in ROOT.glob('include/korvel/*.h') for section in
             headers.read(path).sections for item in section.items for name in item.names}
    return {name for name in names if re.search(r'_|[a-z][A-Z0-9]|[A-Z]{2}[a-z]', name)}


def linked_name(word):
    return '#' * (word[0] in declared()) + word[0]


def words(text):
    """A text whose commands mean nothing, which they do not between quotes anyhow, and whose names
    are links."""
    parts = re.split(r'("(?:\\.|[^"\\])*")', text)
    parts[::2] = [re.sub(r'([\\@<>#%&$*])', r'\\\1', part) for part in parts[::2]]
    parts[::2] = [re.sub(r'\b\w+\b(?!\()', linked_name, part) for part in parts[::2]]
    return ''.join(parts)


def written(comment):
    """A comment in the form that Doxygen reads."""
    lines = []
    for kind, text in headers.blocks(comment):
        if kind == 'code':
            lines += ['', '@code{.c}', text.replace('*/', '* /'), '@endcode', '']
        elif kind == 'point':
            lines.append('- ' + words(text))
        elif kind.startswith('case'):
            lines.append(f'- <b>{kind[5:]}</b>: {words(text)}')
        elif kind == 'result':
            lines += ['', '@return ' + words(text.removeprefix('Returns').lstrip())]
        else:
            lines += ['', words(text)]
    return '\n'.join(lines)


def block(text, mark='/**'):
    return f'{mark} {text.strip()}\n*/'


def print_item(item):
    if item.comment:
        print(block(written(item.comment)))
    if not item.parts:
        print('\n'.join(item.lines))
        return
    print(item.lines[0].partition('{')[0] + '{')
    for code, comment in item.parts:
        print(code, block(written(comment or headers.first_sentence(item.comment)), '/**<'))
    print('}' + item.lines[-1].rpartition('}')[2])


def print_header(path):
    header = headers.read(path)
    print(block(f'@file {header.name}\n' + written(header.comment)))
    for section in header.sections:
        if section.title:
            comments = '\n\n'.join(written(comment) for comment in section.comments)
            print(block(f'@name {section.title}\n{comments}'), '/** @{ */', sep='\n')
        for item in section.items:
            print_item(item)
        if section.title:
            print('/** @} */')


def label(page):
    """The name of a page in the reference."""
    return 'index' if page == MAIN else f'page-{page.stem}'


def print_page(path):
    """Places of a page, and files that are not in the reference, are not linked to."""
    text = re.sub(r'<!--.*?-->\n?', '', path.read_text(), flags=re.S)
    text = re.sub(r'(?<![`\w])`([^`\n]*\'[^`\n]*)`', r'``\1``', text)

    def linked(link):
        target = (path.parent / link[2].partition('#')[0]).resolve()
        if re.match(r'\w+:', link[2]):
            return link[0]
        return f'[{link[1]}](@ref {label(target)})' if target in PAGES - {path} else link[1]

    text = re.sub(r'(?<!!)\[([^\]\[]+)\]\(([^)\s]+)\)', linked, text)
    print(text if path == MAIN else re.sub(r'^(# .*)$', rf'\1 {{#{label(path)}}}', text, 1, re.M))


if __name__ == '__main__':
    file = pathlib.Path(sys.argv[1]).resolve()
    print_header(file) if file.suffix == '.h' else print_page(file)
