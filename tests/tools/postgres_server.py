# SPDX-License-Identifier: MIT
"""postgres_server.py <program> <project>: the exports for PostgreSQL are what a real server takes,
where there is one to be started. scripts/test installs none: Debian's package would leave a server
running."""
import csv
import io
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

program, project = sys.argv[1:]
SKIPPED = 77

servers = sorted(pathlib.Path('/usr/lib/postgresql').glob('*/bin/initdb'))
if not servers or not shutil.which('psql'):
    print('no PostgreSQL server here')
    sys.exit(SKIPPED)
binaries = servers[-1].parent


# A server does not run as root.
def as_user(*command):
    return ['runuser', '-u', 'postgres', '--', *command] if os.geteuid() == 0 else [*command]


def run(*command, **settings):
    return subprocess.run(list(map(str, command)), check=True, stdout=subprocess.PIPE,
                          cwd='/', **settings).stdout.decode()


def rows(text):
    return list(csv.reader(io.StringIO(text, newline='')))


HOSTILE = ('Titre\r\nVersion: 1\r\n#DEBUT\r\n\\.,\\N,\\t\r\nL\'œil,"d",\t\r\n\\,,x\r\n#FIN\r\n')

with tempfile.TemporaryDirectory(prefix='korvel-postgres-') as name:
    folder = pathlib.Path(name)
    folder.chmod(0o755)
    data = folder / 'data'
    data.mkdir()
    if os.geteuid() == 0:
        shutil.chown(data, 'postgres', 'postgres')
    run(*as_user(binaries / 'initdb', '-D', data, '-A', 'trust', '-E', 'UTF8', '--no-sync'))
    options = f"-F -c listen_addresses='' -k {data}"
    run(*as_user(binaries / 'pg_ctl', '-D', data, '-o', options, '-l', data / 'log', '-w', 'start'))
    try:
        def psql(*arguments, **settings):
            return run(*as_user('psql', '-h', data, '-d', 'postgres', '-X', '-q', '-A', '-t',
                                '-F', '\t', *arguments), **settings)

        hostile = folder / 'hostile.tab'
        hostile.write_bytes(HOSTILE.encode('cp1252'))
        tables = [hostile, *sorted(pathlib.Path(project, 'data/tables').glob('*.tab'))]
        for table in tables:
            script = run(program, 'export', table, '--format', 'postgres')
            psql(input=script.encode())
            copied = psql('-c', f'COPY (SELECT * FROM {table.stem}) TO stdout (FORMAT csv)')
            assert rows(copied) == rows(run(program, 'export', table)), table
            index = psql('-c', f"SELECT indexdef FROM pg_indexes WHERE tablename='{table.stem}'")
            assert index.endswith('USING btree (code)\n'), index
    finally:
        run(*as_user(binaries / 'pg_ctl', '-D', data, '-m', 'immediate', 'stop'))
print(f'the server has all of {len(tables)} tables')
