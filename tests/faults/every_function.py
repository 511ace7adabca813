# SPDX-License-Identifier: MIT
"""every_function.py <sources> <nm> <objects...>: each function of the public headers has a row in the
table of operations that calls it; and each function of the system that the library's objects call
is one that can be refused, or one of those below."""
import pathlib
import re
import subprocess
import sys

root, nm, *objects = sys.argv[1:]
here = pathlib.Path(root, 'tests', 'faults')

declared = set()
for header in pathlib.Path(root, 'include', 'korvel').glob('*.h'):
    text = re.sub(r'/\*.*?\*/', '', header.read_text(), flags=re.S)
    declared |= set(re.findall(r'^KORVEL_API (?!extern\b)[\w *]*?(\w+)\(', text, re.M))
if len(declared) < 200:
    sys.exit(f'only {len(declared)} functions read from the headers')

rows = {}
for source in here.glob('*_operations.cpp'):
    text = source.read_text(encoding='latin-1')
    for name in re.findall(r'^ +\{"(\w+)(?:,[^"]*)?",', text, re.M):
        rows.setdefault(name, text)
failures = ['no row: ' + name for name in sorted(declared - set(rows))]
failures += ['no such function: ' + name for name in sorted(set(rows) - declared)]
failures += ['called nowhere: ' + name for name, text in sorted(rows.items())
             if len(re.findall(r'\b%s\b' % name, text)) < 2]

# What cannot fail, or is asked for nothing: texts and memory that the caller has, signals of this
# thread, the clock, the user, the end of what was begun, and lines for standard error.
HARMLESS = re.compile(
    r'^(mem\w+|str\w+|atoi|truncf?|__mem\w+|__str\w+|__snprintf_chk|snprintf|free|malloc_usable_size|sig\w+set|'
    r'sigismember|sigpending|pthread_(equal|s\w+)|posix_spawn\w+_(destroy|set\w+)|time|clock_gettime|localtime_r|tzset|'
    r'geteuid|usleep|dirfd|secure_getenv|dladdr|dlerror|__fprintf_chk|fprintf|fwrite|fputc|__errno_location|'
    r'__popcountdi2|__(cxa|gxx|x86|asan|ubsan|sancov|sanitizer|stack|dso|tls)_\w+|_(Z|GLOBAL_|Unwind_)\w+|environ|stderr)$')
refused = set(re.findall(r'__wrap_(\w+)\(', (here / 'requests.cpp').read_text()))
refused |= set(re.findall(r'^(?:FAULTY|DONE_ANYHOW)\([\w ]+\*?, (\w+),',
                          (here / 'requests.cpp').read_text(), re.M))
refused |= set(re.findall(r'^(?:TRANSFER|SPAWNING)\((\w+),', (here / 'requests.cpp').read_text(),
                          re.M))
if len(refused) < 50:
    sys.exit(f'only {len(refused)} refusals found')
listing = subprocess.run([nm, *objects], capture_output=True, text=True, check=True).stdout
own = {line.split()[-1] for line in listing.splitlines() if re.search(r' [A-TV-Za-z] ', line)}
called = {line.split()[-1] for line in listing.splitlines() if ' U ' in line} - own
failures += ['cannot be refused: ' + name for name in sorted(called - refused)
             if not HARMLESS.match(name)]
if failures:
    sys.exit('\n'.join(failures))
print(f'{len(declared)} functions, {len(refused)} refusals')
