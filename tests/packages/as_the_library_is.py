# SPDX-License-Identifier: MIT
"""as_the_library_is.py <project> <version> <nm> <library>: the packages have the project's version
and tell of every exported name, and what they are built with is what scripts install. The README
names the same."""
import pathlib
import re
import subprocess
import sys

root, version, nm, library = pathlib.Path(sys.argv[1]), *sys.argv[2:]
problems = []

latest = re.match(r'korvel \(([^)]*)\)', (root / 'debian/changelog').read_text())[1]
if latest != version:
    problems.append(f'debian/changelog: {latest} is the latest version, the project has {version}')

listing = subprocess.run([nm, '-D', '--defined-only', '--format=posix', library],
                         capture_output=True, text=True, check=True).stdout
exported = {line.split()[0].split('@')[0] for line in listing.splitlines()}
listed = set(re.findall(r'^ (\w+)@Base ', (root / 'debian/libkorvel1.symbols').read_text(), re.M))
if len(exported) < 400:
    problems.append(f'only {len(exported)} exported names read')
problems += [f'debian/libkorvel1.symbols: missing is the line " {name}@Base {version}"'
             for name in sorted(exported - listed)]
problems += [f'debian/libkorvel1.symbols: {name} is not exported'
             for name in sorted(listed - exported)]

scripts = (root / 'scripts/packages.sh').read_text()


def listed_in_scripts(name):
    return set(re.search(rf'^readonly {name}=\(([^)]*)\)', scripts, re.M)[1].split())


builds = listed_in_scripts('BUILD_PACKAGES')
control = (root / 'debian/control').read_text()
depends = re.search(r'^Build-Depends:\n((?: .*\n)+)', control, re.M)[1]
asked = set(re.findall(r'^ ([\w.+-]+)', depends, re.M)) - {'debhelper-compat'}
problems += [f'debian/control: {name} is built with, and no script installs it'
             for name in sorted(asked - builds - listed_in_scripts('PACKAGING_PACKAGES'))]

command = re.search(r'^    sudo apt-get install (build-essential(?:.*\\\n)*.*)',
                    (root / 'README.md').read_text(), re.M)[1]
told = set(re.findall(r'[\w.+-]+', command))
problems += [f'README.md: {name} is named here or in scripts/packages.sh alone'
             for name in sorted(told ^ (builds | listed_in_scripts('TOOL_PACKAGES')))]

if problems:
    sys.exit('\n'.join(problems))
print(f'version {version}, {len(listed)} names and {len(asked)} packages to build with agree')
