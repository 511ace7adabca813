# SPDX-License-Identifier: MIT
"""french_typography.py <examples>: in the texts that the examples show no line can begin with a
sign that belongs to the line before, as the blank before it does not break (U+00A0)."""
import html
import pathlib
import re
import sys

# A blank that breaks, or none, where French wants one that does not.
FAULTS = re.compile(r'[ \t\r\n][?!:;»€]|«[ \t\r\n]|[^\W_][?!»€]|«[^\W_]')

TOKENS = re.compile(r'/\*.*?\*/|//[^\n]*|\'(?:[^\'\\]|\\.)+\'|(?:"(?:[^"\\\n]|\\.)*"\s*)+', re.S)
ESCAPES = re.compile(r'\\(?:u([0-9A-Fa-f]{4})|x([0-9A-Fa-f]{2})|([0-7]{3})|(.))', re.S)


def unescaped(match):
    long, byte, octal, letter = match.groups()
    if letter:
        return {'n': '\n', 'r': '\r', 't': '\t'}.get(letter, letter)
    if long:
        return chr(int(long, 16))
    return bytes([int(byte, 16) if byte else int(octal, 8)]).decode('cp1252', 'replace')


def texts_of_source(source):
    for token in TOKENS.findall(source):
        if token.startswith('"'):
            yield ESCAPES.sub(unescaped, re.sub(r'"\s*"', '', token.rstrip())[1:-1])


def texts_of_form(form):
    return map(html.unescape, re.findall(r'<string>(.*?)</string>', form, re.S))


for right in ('«\u00a0Oui\u00a0»\u00a0?', '5\u00a0€', 'Prix (€)', 'a\u00a0: b', 'Cabinet:fiches'):
    assert not FAULTS.findall(right), right
for wrong in ('Oui ?', 'Oui?', '«\u00a0Oui »', '« Oui\u00a0»', 'a ; b', 'a\r! b', '5 €', '5€'):
    assert FAULTS.findall(wrong), wrong
assert list(texts_of_source('f("a" /* "b ?" */, "c\\240"\n  "?"); // "d"')) == ['a', 'c\u00a0?']

count = 0
problems = []
for path in sorted(pathlib.Path(sys.argv[1]).rglob('*')):
    if path.suffix in ('.c', '.h', '.cpp'):
        texts = texts_of_source(path.read_text(encoding='utf-8'))
    elif path.suffix == '.ui':
        texts = texts_of_form(path.read_text(encoding='utf-8'))
    else:
        continue
    for text in texts:
        count += 1
        problems += [f'{path}: "{fault}" in "{text}"' for fault in FAULTS.findall(text)]
print('\n'.join(problems) or f'{count} texts')
sys.exit(1 if problems or count == 0 else 0)
