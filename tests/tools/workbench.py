# SPDX-License-Identifier: MIT
"""A folder of small tables, and the program that is tried on them."""
import os
import pathlib
import subprocess
import tempfile
import unittest

# Set by the program that runs the cases.
program = ''
project = pathlib.Path()


def table_bytes(*data, title='Actes', version='2'):
    """A table of these data lines, as it should be."""
    lines = [title, f'Version: {version}', '#DEBUT', *data, '#FIN']
    return ''.join(line + '\r\n' for line in lines).encode('cp1252')


class Result:
    def __init__(self, run):
        self.code = run.returncode
        self.out = run.stdout.decode('utf-8')
        self.err = run.stderr.decode('utf-8')
        self.lines = self.out.splitlines()


class Workbench(unittest.TestCase):
    maxDiff = None
    # The library tells of misuse, which is then too much on standard error. It tells of calls that
    # fail, too: off where they do.
    debug = '1'

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix='korvel-tables-')
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.table = self.folder / 'actes.tab'

    def run_tool(self, *arguments, **settings):
        return Result(subprocess.run([program, *map(os.fspath, map(str_or_bytes, arguments))],
                                     capture_output=True, cwd=self.folder, check=False, timeout=120,
                                     env={**os.environ, 'KORVEL_DEBUG': self.debug}, **settings))

    def put(self, *data, **heading):
        """Makes the table of data lines."""
        self.table.write_bytes(table_bytes(*data, **heading))

    def data(self):
        """The data lines of the table, which has to be whole."""
        lines = self.table.read_bytes().decode('cp1252').split('\r\n')
        self.assertEqual([lines[2], lines[-2:]], ['#DEBUT', ['#FIN', '']])
        return lines[3:-2]

    def expect(self, code, *arguments, out=None, err=None):
        """Runs the tool. A failure has to have one line on standard error, and nothing else has any
        (but the one that says what was not found)."""
        result = self.run_tool(*arguments)
        shown = f'{arguments}: {result.out}{result.err}'
        self.assertEqual(result.code, code, shown)
        if out is not None:
            self.assertEqual(result.lines, out, shown)
        if code == 0:
            self.assertEqual(result.err, '', shown)
        if code == 2:
            self.assertRegex(result.err, r'^korvel-tables: [^\n]+\n$', shown)
        if err is not None:
            self.assertIn(err, result.err, shown)
        return result

    def expect_refused(self, *arguments, err):
        """A use that gives 2 and leaves every file of the folder as it was."""
        before = self.files()
        self.expect(2, *arguments, out=[], err=err)
        self.assertEqual(self.files(), before)

    def files(self):
        return {path.name: path.read_bytes() for path in self.folder.iterdir() if path.is_file()}


def str_or_bytes(argument):
    return argument if isinstance(argument, (str, bytes)) else os.fspath(argument)


def real_tables():
    tables = sorted((project / 'data/tables').glob('*.tab'))
    assert len(tables) == 8, tables
    return tables
