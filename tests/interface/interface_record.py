# SPDX-License-Identifier: MIT
"""interface_record.py <cc> <abidw> <abidiff> <nm> <include folder> <library> <record> <scratch folder>
[--renew]: what applications are built against is what the record says: each function and what it
takes and gives, each variable, structure and constant. With --renew the record is written anew.

The interface is read from a library made of the headers alone, in which each function is empty. Its
debugging information has all that the headers declare and nothing private, whatever the library
itself was built with. The library cannot differ from it: it is compiled with the same headers, and
its variables are compared in size. They, and not the library's code, are what a change begins with.
"""
import os
import pathlib
import re
import subprocess
import sys

compiler, abidw, abidiff, nm, include, library, record, scratch, *renew = sys.argv[1:]
scratch = pathlib.Path(scratch)
include = pathlib.Path(include)


def declarations():
    for header in sorted(include.glob('korvel/*.h')):
        text = re.sub(r'/\*.*?\*/', '', header.read_text(), flags=re.S)
        yield from re.findall(r'^KORVEL_API\s+([^;]*);', text, re.M)


def definition(declaration):
    if not declaration.startswith('extern'):
        return declaration + ' { __builtin_trap(); }'
    # A pointer to a function has its name inside, all others before their bounds.
    name = (re.search(r'\(\*\s*(\w+)', declaration) or
            re.search(r'(\w+)\s*(?:\[[^\]]*\]\s*)*$', declaration))[1]
    return f'__typeof__({name}) {name};'


def run(*command, status=(0,)):
    done = subprocess.run(command, cwd=scratch, capture_output=True, text=True, check=False)
    if done.returncode not in status:
        sys.exit(f'{command[0]} ended with {done.returncode}:\n{done.stdout}{done.stderr}')
    return done


def sizes(file):
    """The variables, with their sizes."""
    lines = [line.split() for line in run(nm, '-DS', '--defined-only', file).stdout.splitlines()]
    return {line[3]: int(line[1], 16) for line in lines
            if len(line) == 4 and line[2] in 'BDR' and line[3][0] != '_'}


def soname(file):
    return re.search(r'libkorvel\.so\.\d+', run('readelf', '-d', file).stdout)[0]


def interface():
    """Writes down what the headers declare, and returns where."""
    scratch.mkdir(parents=True, exist_ok=True)
    defined = [definition(declaration) for declaration in declarations()]
    if len(defined) < 400:
        sys.exit(f'only {len(defined)} declarations read')
    (scratch / 'interface.c').write_text('\n'.join(['#include <korvel/korvel.h>', *defined, '']))
    run(compiler, '-std=gnu99', '-w', '-g', '-fno-eliminate-unused-debug-types', '-fPIC', '-shared',
        f'-Wl,-soname,{soname(library)}', '-I', str(include), 'interface.c', '-o', 'interface.so')
    if sizes('interface.so') != sizes(library):
        sys.exit('variables of the library have not the sizes that the headers declare')
    run(abidw, '--no-corpus-path', '--no-comp-dir-path', '--no-show-locs', '--no-architecture',
        '--no-elf-needed', '--no-parameter-names', '--type-id-style', 'hash', '--load-all-types',
        '--out-file', 'interface.abi', 'interface.so')
    return scratch / 'interface.abi'


include, library = include.resolve(), os.path.abspath(library)
found = interface()
if renew == ['--renew']:
    pathlib.Path(record).write_text(found.read_text())
    sys.exit()
# Functions, variables and constants that were added are changes as well, and harmless ones, too.
compared = run(abidiff, '--non-reachable-types', '--harmless', '--no-show-locs', '--no-corpus-path',
               os.path.abspath(record), str(found.resolve()), status=(0, 4, 8, 12))
if compared.returncode != 0 or compared.stdout:
    sys.exit(f'{compared.stdout}\nThe interface is another one than tests/interface/record.abi '
             'says. Where that is meant, CONTRIBUTING.md\nsays what it makes of the version, and '
             'scripts/interface-record writes the record anew.')
print('the interface is as recorded')
