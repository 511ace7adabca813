"""tidy.py <clang-tidy> <build folder> <project>: clang-tidy finds nothing in the sources of
the library and the examples, nor in their headers. Tests and benchmarks are left out: they would
take longer than everything else."""
import json
import pathlib
import subprocess
import sys

tidy, build, project = sys.argv[1:]
FOLDERS = ['shell', 'strings', 'codecs', 'dates', 'files', 'profile', 'tables', 'platform', 'draw',
           'messages', 'dialogs', 'examples']

commands = json.loads((pathlib.Path(build) / 'compile_commands.json').read_text())
sources = sorted({entry['file'] for entry in commands
                  if pathlib.Path(entry['file']).is_relative_to(project) and
                  pathlib.Path(entry['file']).relative_to(project).parts[0] in FOLDERS})


def faults(source):
    run = subprocess.run([tidy, '-p', build, '--quiet', source], capture_output=True, text=True,
                         check=False)
    if run.returncode == 0:
        return ''
    return run.stdout.strip() or run.stderr.strip() or f'{source}: clang-tidy ended early'


found = [text for text in map(faults, sources) if text]
if found:
    sys.exit('\n'.join(found))
if len(sources) < 80:
    sys.exit(f'only {len(sources)} sources looked at')
print(f'nothing found in {len(sources)} sources')
