# SPDX-License-Identifier: MIT
"""What the comments of the public headers say that each function returns when it fails."""
import re

# Comments have few turns for it; these find them. A success that they take for a failure is among
# the ordinary answers.
VALUE = r'(?:Korvel\w+ \()?(-?\d+(?: << \d+)?|null|Korvel\w+Status)\b\)?'
WHEN = r'(?:,(?! or)[^.;:]*?| and \w+[^.;:]*?)? (?:when|if|for|where|outside|without|unless|at)\b'
END = r'(?=[.,;:]|$| (?:when|if|for|without|with|after|otherwise|on an error)\b)'
FAILURES = [re.compile(pattern) for pattern in (
    # "Returns -1 when ...", "Returns 0, with out untouched, when ...", "Returns 0 unless ..."
    rf'[Rr]eturns (?!1\b){VALUE}(?: too| also)?{WHEN}',
    rf'[Rr]eturns {VALUE}(?: and leaves| with (?:nothing|\*out null))',
    # "Returns the handle, or -1.", "... when it fits, else 0", "Otherwise returns 0"
    rf'(?:\bor|\belse|\bOtherwise returns|\bgives|\band returns) {VALUE}{END}',
    # "Returns their number; 0 at the end, ...", "... its position, -1 when there is none"
    rf'(?:[,;:.]| and) {VALUE}{WHEN}',
    rf'[:,] {VALUE} is returned')]
# "Returns 0 when accepted, 1 when ...", "Returns 1 if it exists, else 0"
SUCCESS = re.compile(rf'[Rr]eturns (0|1){WHEN}[^.;]*(?:\belse|,|, and|, or) (?:0|1|-1|the code)\b')
# "  -1  why" and "- KorvelNoSlotStatus (-1): why", a line each
CODE = re.compile(r'^\s*(?:- )?(?:Korvel\w+ \()?(-?[1-9]\d*)\)?(?:  |: )\S', re.M)
EXAMPLE = re.compile(r'\n {5}\S[^\n]*->[^\n]*')
AS_ANOTHER = re.compile(r'(?:\bAs|\belse as|[Tt]he same as|(?:Returns|Results|results) as|'
                        r'codes? of|(?:Returns|Does) what|read(?:s|ing) with) (\w+)\b')
RESULTS = re.compile(r'[Rr]eturns|[Rr]esults')
PART_OF_RESULTS = re.compile(r'(?:Returns|Results)\b.*', re.S)


def said(text):
    """The failing values that a comment names."""
    part = PART_OF_RESULTS.search(text)
    text = EXAMPLE.sub('', part.group(0) if part else text)
    words = re.sub(r'\s+', ' ', text)
    values = set(CODE.findall(text))
    for pattern in FAILURES:
        values |= set(pattern.findall(words))
    return {value.replace(' ', '') for value in values - set(SUCCESS.findall(words))}


def failing_values(root):
    """Of each function of the headers that returns something: its failing values. One that says
    nothing of its results has those of its section; one that is as another has that one's, too."""
    declared = {}
    by_ending = {}  # "A _param function that is out of its range [...] returns -1"
    for header in sorted(root.glob('include/korvel/*.h')):
        text = header.read_text(encoding='utf-8')
        by_ending |= re.findall(r'\bA (_\w+) function[^.]*?returns (-?\d+)', text)
        section = comment = ''
        for token in re.finditer(r'/\*(.*?)\*/(\n\n)?|^KORVEL_API\s+(?!extern)(.*?)(\w+)\s*\(',
                                 text, re.S | re.M):
            comment_of, ends_section, result, name = token.groups()
            if name is None:
                comment = comment_of
                section = comment if ends_section and '----' in comment else section
            elif result.strip() != 'void':
                declared[name] = (comment, section)

    def values(name, before=()):
        comment, section = declared[name]
        found = said(comment)
        if not RESULTS.search(comment) and not AS_ANOTHER.search(comment):
            found |= said(section)
        for other in AS_ANOTHER.findall(re.sub(r'\s+', ' ', comment)):
            if other in declared and other != name and other not in before:
                found |= values(other, before + (name,))
        return found | {value for ending, value in by_ending.items() if name.endswith(ending)}

    return {name: values(name) for name in declared}
