# SPDX-License-Identifier: MIT
"""count.py <valgrind> <program> <record> <scratch folder> [--renew]: none of the program's calls
takes over 5 % more instructions than the record says; or writes the record anew. Where the numbers
would depend on more than the library (another compiler, C library or processor than the record's)
nothing is compared, and the answer is 77, which CTest counts as skipped."""
import pathlib
import re
import shutil
import subprocess
import sys

ALLOWED = 1.05
HEAD = '# Instructions of a call; scripts/instructions renews them.\n'


def machine(valgrind, program_says):
    version = subprocess.run([valgrind, '--version'], capture_output=True, text=True, check=True)
    return f'{program_says.strip()}, {version.stdout.strip()}'


def run(valgrind, program, scratch):
    """What the program prints, and its dumps in the scratch folder."""
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)
    done = subprocess.run(
        [valgrind, '--tool=callgrind', f'--callgrind-out-file={scratch}/dump', '--dump-line=no',
         program], capture_output=True, text=True, check=False)
    if done.returncode == 77:
        skip(done.stderr.strip().splitlines()[-1])
    if done.returncode != 0 or 'unhandled' in done.stderr:
        sys.exit(done.stdout + done.stderr)
    return done.stdout


def skip(why):
    print(f'nothing is compared: {why}')
    sys.exit(77)


def counts(scratch):
    """Instructions of one call, by name, in the program's order."""
    totals = {}
    for dump in sorted(scratch.glob('dump.*'), key=lambda path: int(path.suffix[1:])):
        text = dump.read_text()
        mark = re.search(r'^desc: Trigger: Client Request: (\d+) times (.+)$', text, re.M)
        if mark:
            total = int(re.search(r'^(?:totals|summary): (\d+)$', text, re.M)[1])
            totals.setdefault(mark[2], {})[int(mark[1])] = total
    return {name: round((of[max(of)] - of[min(of)]) / (max(of) - min(of)))
            for name, of in totals.items()}


def write(record, made_on, now):
    lines = ''.join(f'{count:9} {name}\n' for name, count in now.items())
    record.write_text(f'{HEAD}# {made_on}\n{lines}')


def read(record):
    """What the record was made on, and its counts."""
    made_on = re.findall(r'^# (.+)$', record.read_text(), re.M)[1]
    return made_on, {name: int(count)
                     for count, name in re.findall(r'^ *(\d+) (.+)$', record.read_text(), re.M)}


def compare(then, now):
    if list(then) != list(now):
        sys.exit(f'other calls than in the record: {", ".join(then.keys() ^ now.keys())}; '
                 'scripts/instructions renews it')
    grown = []
    for name, count in now.items():
        ratio = count / then[name]
        remark = ''
        if ratio > ALLOWED:
            grown.append(name)
            remark = '  more than 5 % above the record'
        elif ratio < 2 - ALLOWED:
            remark = '  far below the record, please renew it: scripts/instructions'
        print(f'{count:9} {ratio:6.3f} of the record  {name}{remark}')
    if grown:
        sys.exit('grown: ' + ', '.join(grown))


def main(valgrind, program, record, scratch, *options):
    record, scratch = pathlib.Path(record), pathlib.Path(scratch)
    made_on = machine(valgrind, run(valgrind, program, scratch))
    now = counts(scratch)
    if not now or min(now.values()) <= 0:
        sys.exit(f'no counts of calls: {now}')
    if '--renew' in options:
        write(record, made_on, now)
        print(record.read_text(), end='')
        return
    recorded_on, then = read(record)
    if made_on != recorded_on:
        skip(f'here is {made_on}; the record is of {recorded_on}')
    compare(then, now)


main(*sys.argv[1:])
