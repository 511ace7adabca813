# SPDX-License-Identifier: MIT
"""man.py <include folder> <folder> <version>: writes the man pages of section 3 out of the public
headers: one for each function, one for each header, with its types, variables and constants, and
korvel(3), which leads to them. They hold no date and no path."""
import pathlib
import re
import sys

import headers


def roff(text):
    text = text.replace('\\', '\\e').replace('-', '\\-')
    return re.sub(r"^([.'])", r'\\&\1', text, flags=re.M)


def sentence(text):
    """The first sentence, as what a page's name is said to do."""
    text = headers.first_sentence(text)
    return text[0].lower() + text[1:] if re.match(r'[A-Z][a-z]*(?=[ ,:])', text) else text


def body(blocks):
    """Blocks of a comment."""
    lines = []
    for kind, text in blocks:
        if kind == 'code':
            lines += ['.PP', '.RS 4', '.nf', roff(text), '.fi', '.RE']
        elif kind == 'point':
            lines += ['.IP \\(bu 2', roff(text)]
        elif kind.startswith('case'):
            lines += [f'.IP "{roff(kind[5:])}" 8', roff(text)]
        else:
            lines += ['.PP', roff(text)]
    return lines


class Manual:
    def __init__(self, include, folder, version):
        self.folder, self.version = folder, version
        self.headers = [header for header in map(headers.read, sorted(include.glob('korvel/*.h')))
                        if header.name != 'korvel.h']
        self.functions = {item.names[0] for header in self.headers
                          for section in header.sections for item in section.items
                          if item.is_function}

    def write(self, name, about, lines, related):
        head = ['.\\" SPDX-License-Identifier: MIT',
                f'.TH {name} 3 "" "Korvel {self.version}" Korvel', '.SH NAME',
                f'{roff(name)} \\- {roff(about)}']
        tail = ['.SH SEE ALSO'] + [f'.BR {roff(other)} (3){"," if other != related[-1] else ""}'
                                   for other in related]
        (self.folder / f'{name}.3').write_text('\n'.join(head + lines + tail) + '\n')

    def function(self, header, item):
        name, found = item.names[0], headers.blocks(item.comment)
        at = next((n for n, (kind, _) in enumerate(found) if kind == 'result'), len(found))
        examples = [block for block in found if block[0] == 'code' and '->' in block[1]]
        told = [block for block in found[:at] if block not in examples]
        results = [block for block in found[at:] if block not in examples]
        lines = ['.SH SYNOPSIS', f'.B #include <korvel/{header.name}>', '.HP 4',
                 f'.B {roff(item.declaration)}', '.SH DESCRIPTION', *body(told)[1:]]
        if results:
            lines += ['.SH RETURN VALUE', *body(results)[1:]]
        if examples:
            lines += ['.SH EXAMPLES', *body(examples)[1:]]
        named = sorted({word for word in re.findall(r'\w+', item.comment)
                        if word in self.functions and word != name}, key=str.lower)
        self.write(name, sentence(item.comment), lines, [page_of(header)] + named)

    def header(self, header):
        about, _, rest = header.comment.partition('\n\n')
        lines = ['.SH SYNOPSIS', f'.B #include <korvel/{header.name}>', '.SH DESCRIPTION',
                 *body(headers.blocks(about))[1:], *body(headers.blocks(rest))]
        functions = []
        for section in header.sections:
            if section.items or section.comments:
                lines.append(f'.SH {roff(section.title).upper() or "CONTENTS"}')
            for comment in section.comments:
                lines += body(headers.blocks(comment))
            for item in section.items:
                lines += self.listed(item)
                functions += item.names if item.is_function else []
        self.write(page_of(header), sentence(header.comment), lines,
                   ['korvel', *sorted(functions, key=str.lower)])

    @staticmethod
    def listed(item):
        """A declaration as a header's page lists it; functions have pages of their own."""
        if item.is_function:
            return ['.TP', f'.BR {roff(item.names[0])} (3)', roff(sentence(item.comment))]
        declaration = item.lines[0] + ' ... }' if item.parts else item.declaration
        lines = ['.TP', f'.B {roff(declaration)}', *body(headers.blocks(item.comment))[1:]]
        if item.parts:
            lines += ['.RS', '.PD 0']
            for code, comment in item.parts:
                lines += ['.TP', f'.B {roff(code.rstrip(","))}']
                if comment:
                    lines.append(roff(re.sub(r'\s+', ' ', comment)))
            lines += ['.PD', '.RE']
        return lines

    def run(self):
        for header in self.headers:
            self.header(header)
            for section in header.sections:
                for item in section.items:
                    if item.is_function:
                        self.function(header, item)
        lines = ['.SH SYNOPSIS', '.B #include <korvel/korvel.h>', '.PP',
                 '.B cc program.c $(pkg\\-config \\-\\-cflags \\-\\-libs korvel)',
                 '.SH DESCRIPTION',
                 'Each header has a page, which leads to those of its functions:']
        for header in self.headers:
            lines += ['.TP', f'.BR {roff(page_of(header))} (3)', roff(sentence(header.comment))]
        self.write('korvel', 'support library of a medical practice application', lines,
                   [page_of(header) for header in self.headers])


def page_of(header):
    return 'korvel_' + header.name.removesuffix('.h')


if __name__ == '__main__':
    include, folder, version = sys.argv[1:]
    pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
    Manual(pathlib.Path(include), pathlib.Path(folder), version).run()
