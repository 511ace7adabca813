# SPDX-License-Identifier: MIT
"""installed.py <folder>: puts the documentation into a folder as it is installed: laid out as in the
project, its pages without links to what stands in the sources alone."""
import pathlib
import re
import shutil
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LEFT_OUT = ROOT / 'docs/reference', ROOT / 'docs/words'
FILES = {ROOT / 'LICENSE', *ROOT.glob('*.md'),
         *(path for path in ROOT.glob('docs/**/*') if path.is_file() and
           not any(path.is_relative_to(other) for other in LEFT_OUT))}


def without_lost_links(page):
    def kept(link):
        target = (page.parent / link[2].partition('#')[0]).resolve()
        leads = re.match(r'\w+:|#', link[2]) or target in FILES
        return link[0] if leads else link[1]

    return re.sub(r'(?<!!)\[([^\]\[]+)\]\(([^)\s]+)\)', kept, page.read_text())


folder = pathlib.Path(sys.argv[1])
shutil.rmtree(folder, ignore_errors=True)
for path in sorted(FILES):
    target = folder / path.relative_to(ROOT)
    target.parent.mkdir(parents=True, exist_ok=True)
    if path.suffix == '.md':
        target.write_text(without_lost_links(path))
    else:
        shutil.copyfile(path, target)
