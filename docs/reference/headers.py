# SPDX-License-Identifier: MIT
"""What the public headers declare, section by section, with their comments: for the reference and
the man pages, which are made of nothing else.

A comment above a declaration goes for those that follow it without an empty line, too; one beside a
declaration is that one's own. A comment with an empty line below it belongs to its section."""
import re
from dataclasses import dataclass, field

SECTION = re.compile(r'/\* -{3,} (.*?) -+ ?(\*/)?$')
IGNORED = re.compile(r'#|extern "C"|\}$')


@dataclass
class Item:
    """A declaration: its lines without the export macro, and its comment. Of a type or an enum
    `parts` has the lines between the braces, each with its comment."""
    lines: list
    comment: str
    parts: list = field(default_factory=list)

    @property
    def declaration(self):
        return re.sub(r'\s+', ' ', ' '.join(self.lines)).strip()

    @property
    def names(self):
        """What is declared: one name, or those of an enum's constants."""
        text = self.declaration
        if text.startswith('enum'):
            return re.findall(r'(\w+)(?: = [^,}]+)?(?:,|$)',
                              ' '.join(line for line, _ in self.parts))
        found = (re.search(r'\(\*(\w+)\)', text) if text.startswith('typedef') else None) or \
            re.search(r'(\w+)\(', text) or re.search(r'(\w+)(?:\[\d+\])*;$', text)
        return [found[1]]

    @property
    def is_function(self):
        return bool(re.match(r'(?!typedef)[\w *]+\(', self.declaration))


@dataclass
class Section:
    title: str
    comments: list = field(default_factory=list)
    items: list = field(default_factory=list)


@dataclass
class Header:
    name: str
    comment: str
    sections: list


def plain(comment, column=0):
    """The text of a comment that begins in this column, without its marks."""
    text = re.sub(r'^/\* ?|\s*\*/$', '', comment.strip())
    return re.sub(rf'^ {{0,{column + 3}}}', '', text, flags=re.M).strip('\n')


class Reader:
    """The lines of a header, one after the other."""

    def __init__(self, lines):
        self.lines = lines

    def __bool__(self):
        return bool(self.lines)

    def peek(self):
        return self.lines[0] if self.lines else ''

    def take(self):
        return self.lines.pop(0)

    def comment(self, begin):
        """A comment of which `begin` was read already."""
        while '*/' not in begin:
            begin += '\n' + self.take()
        return begin


def split(line):
    """A line's code and the comment that begins beside it, or an empty text."""
    code, mark, comment = line.partition('/*')
    return code.rstrip(), mark + comment


def parts(reader, lines):
    """The lines between the braces of a type or an enum, up to the closing one."""
    found, above = [], ''
    while True:
        line = reader.take()
        if line.startswith('}'):
            lines.append(line)
            return found
        code, comment = split(line)
        if comment:
            comment = plain(reader.comment(comment), 2)
        if not code:
            above = comment
        elif code.strip():
            found.append((code.strip(), comment or above))
        if not line.strip():
            above = ''


def item(reader, above):
    """The declaration at the reader's place."""
    lines, comment, inside = [], '', []
    while True:
        code, beside = split(reader.take())
        lines.append(code.replace('KORVEL_API ', ''))
        if beside:
            comment = plain(reader.comment(beside), len(code) + 1)
        if code.endswith('{'):
            inside = parts(reader, lines)
        if lines[-1].endswith(';'):
            break
    if ' { ' in lines[0]:
        inside = [(part.strip() + ',', '') for part in
                  re.search(r'\{(.*)\}', ' '.join(lines))[1].split(',')]
    return Item(lines, comment or above, inside)


def read(path):
    """A header's file as a Header."""
    lines = path.read_text().splitlines()
    reader = Reader(lines[1:])
    header = Header(path.name, plain(reader.comment(reader.take())), [Section('')])
    above = ''
    while reader:
        line = reader.peek()
        if not line.strip() or IGNORED.match(line):
            reader.take()
            above = ''
        elif SECTION.match(line):
            title = SECTION.match(reader.take())
            header.sections.append(Section(title[1]))
            if not title[2]:
                header.sections[-1].comments.append(plain(reader.comment('\n')).strip())
        elif line.startswith('/*'):
            above = plain(reader.comment(reader.take()))
            if not reader.peek().strip():
                header.sections[-1].comments.append(above)
        else:
            header.sections[-1].items.append(item(reader, above))
    return header


# ---- Comments ----

LABEL = re.compile(r'(-?\d+(?: (?:to|or) \d+)?)  (\S.*)')


def blocks(comment):
    """A comment as a list of pairs: ('text', a paragraph), ('result', one that says what is
    returned), ('point', text of a list), ('case 1', text of a list of results) and ('code',
    lines)."""
    found = []
    open_ = None  # the kind of the block that a line may go on with
    for number, line in enumerate(comment.splitlines()):
        indent = len(line) - len(line.lstrip())
        text = line.strip()
        least = {'point': 2}.get(open_, 3 if open_ and open_.startswith('case') else 99)
        label = LABEL.fullmatch(text) if indent == 0 else None
        if not text:
            open_ = None
        elif indent >= least or (indent == 0 and open_ in ('text', 'result') and not label and
                                 not (text + ' ').startswith(('- ', 'Returns '))):
            found[-1] = (found[-1][0], found[-1][1] + ' ' + text)
        elif indent > 0 and open_ == 'code':
            found[-1] = ('code', found[-1][1] + '\n' + line[2:])
        else:
            if indent > 0:
                open_, text = 'code', line[2:]
            elif text.startswith('- '):
                open_, text = 'point', text[2:]
            elif label:
                open_, text = f'case {label[1]}', label[2]
            else:
                open_ = 'result' if (text + ' ').startswith('Returns ') and number > 0 else 'text'
            found.append((open_, text))
    return [block for kind, text in found for block in divided(kind, text)]


def divided(kind, text):
    """A paragraph as two where a later sentence of it says what is returned."""
    begin = text.find('. Returns ') + 2
    if kind != 'text' or begin < 2 or text.startswith('Returns '):
        return [(kind, text)]
    return [(kind, text[:begin - 1]), ('result', text[begin:])]


def first_sentence(comment):
    """Without its point, and what is told between brackets."""
    comment = re.sub(r' \([^)]{12,}\)|`', '', re.sub(r'\s+', ' ', comment))
    return re.split(r'[.;](?=\s|$)', comment, 1)[0]
