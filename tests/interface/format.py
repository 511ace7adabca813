# SPDX-License-Identifier: MIT
"""format.py <clang-format> <project>: every source has the form that clang-format gives it."""
import pathlib
import subprocess
import sys

formatter, project = sys.argv[1:]
FOLDERS = ['base', 'shell', 'strings', 'codecs', 'dates', 'files', 'profile', 'tables', 'platform',
           'draw', 'messages', 'dialogs', 'include', 'tests', 'bench', 'docs', 'examples',
           'tools']

sources = [str(path) for folder in FOLDERS for suffix in ('cpp', 'h', 'c')
           for path in pathlib.Path(project, folder).rglob(f'*.{suffix}')]
run = subprocess.run([formatter, '--dry-run', '--Werror', *sources], capture_output=True, text=True,
                     check=False)
if run.returncode != 0:
    sys.exit(run.stderr)
if len(sources) < 300:
    sys.exit(f'only {len(sources)} sources looked at')
print(f'{len(sources)} sources have their form')
