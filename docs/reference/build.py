# SPDX-License-Identifier: MIT
"""build.py <doxygen> <folder> <version> <description>: makes the reference in the folder html/ of a
folder, and the man pages in man3/ there. A function or a variable without a comment, and whatever
else Doxygen warns of, is an error. An enumerator without one has that of its enum, which
tests/interface/header_comments.py demands."""
import pathlib
import shutil
import subprocess
import sys

import filter as pages
import man

doxygen, folder, version, description = sys.argv[1:]
folder = pathlib.Path(folder).resolve()
scripts = pathlib.Path(__file__).resolve().parent
project = scripts.parents[1]
for made in ('html', 'man3'):
    shutil.rmtree(folder / made, ignore_errors=True)
    (folder / made).mkdir(parents=True)

read = ['include/korvel', *sorted(str(page.relative_to(project)) for page in pages.PAGES)]
settings = (scripts / 'Doxyfile').read_text() + f'''
PROJECT_NUMBER = {version}
PROJECT_BRIEF = "{description}"
OUTPUT_DIRECTORY = "{folder}"
INPUT = {' '.join(read)}
FILTER_PATTERNS = "*.h={sys.executable} -B {scripts}/filter.py" \\
  "*.md={sys.executable} -B {scripts}/filter.py"
'''
run = subprocess.run([doxygen, '-'], input=settings, cwd=project, text=True, check=False)
man.Manual(project / 'include', folder / 'man3', version).run()
sys.exit(run.returncode)
