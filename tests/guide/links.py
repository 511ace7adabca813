# SPDX-License-Identifier: MIT
"""links.py <project>: each link of the documentation to a place of the project leads there."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
PAGES = ['README.md', '*.md', 'docs/**/*.md', 'examples/*/*.md', 'data/**/*.md', 'tools/**/*.md']


def anchors(page):
    """The places of a page, as GitHub names its headings."""
    text = re.sub(r'^```.*?^```', '', page.read_text(), flags=re.M | re.S)
    headings = re.findall(r'^#+ (.*)$', text, re.M)
    return {re.sub(r'[^\w\- ]', '', heading.lower()).replace(' ', '-') for heading in headings}


problems = []
count = 0
for page in sorted({path for pattern in PAGES for path in root.glob(pattern)}):
    text = re.sub(r'^```.*?^```|`[^`\n]+`', '', page.read_text(), flags=re.M | re.S)
    for link in re.findall(r'\]\(([^)\s]+)\)', text):
        if re.match(r'\w+:', link):
            continue
        count += 1
        path, _, anchor = link.partition('#')
        target = page.parent / path if path else page
        if not target.exists():
            problems.append(f'{page.relative_to(root)}: there is no {path}')
        elif anchor and anchor not in anchors(target):
            problems.append(f'{page.relative_to(root)}: {target.name} has no place #{anchor}')
if problems:
    sys.exit('\n'.join(problems))
if count < 60:
    sys.exit(f'only {count} links read')
print(f'{count} links, each of which leads somewhere')
