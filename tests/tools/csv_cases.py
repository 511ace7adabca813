# SPDX-License-Identifier: MIT
"""What `import` takes and refuses, and what `export` writes."""
import csv
import io
import os
import random
import re
import sqlite3
import stat

from workbench import Workbench, real_tables, table_bytes

HEADING = ['--title', 'Actes', '--version', '2']


class Import(Workbench):
    def csv(self, content):
        path = self.folder / 'list.csv'
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def expect_table(self, content, *data, options=()):
        self.csv(content)
        self.expect(0, 'import', 'list.csv', 'actes.tab', *HEADING, *options, out=[])
        self.assertEqual(self.table.read_bytes(), table_bytes(*data))

    def expect_no_table(self, content, *options, err):
        self.csv(content)
        self.expect_refused('import', 'list.csv', 'actes.tab', *HEADING, *options,
                            err=f'korvel-tables: {err}')

    def test_csv_becomes_a_table(self):
        rows = [
            ('01,Consultation\r\n02,Visite\r\n', ['01,Consultation', '02,Visite'], []),
            # Any line end, and none behind the last row.
            ('01,A\n02,B', ['01,A', '02,B'], []),
            ('01,A\r02,B\r', ['01,A', '02,B'], []),
            # Quotes.
            ('"01","d""Or"\r\n', ['01,d"Or'], []),
            ('"","",x\r\n', [',,x'], []),
            ('01,A,\r\n"",,\r\n""\r\n', ['01,A,', ',,', ''], []),
            # Rows without any byte are none.
            ('01,A\r\n\r\n', ['01,A'], []),
            ('\n\n01,A\n\n\n02,B\n\r', ['01,A', '02,B'], []),
            ('\r\n', [], []),
            ('\uFEFF\r\ncode\r\n01,A', ['01,A'], ['--header']),
            ('01; A \r\n', ['01, A '.replace(',', ';')], []),
            # UTF-8, with a mark or without; CP1252.
            ('01,Été d’œufs €\r\n', ['01,Été d’œufs €'], []),
            ('\uFEFF01,é\r\n', ['01,é'], []),
            ('01,é’\r\n'.encode('cp1252'), ['01,é’'], ['--encoding', 'cp1252']),
            # Delimiters; a comma is one no more then, but separates the table's fields.
            ('01;A\r\n', ['01,A'], ['--delimiter', ';']),
            ('01\tA\r\n', ['01,A'], ['--delimiter', '\\t']),
            ('01\tA\r\n', ['01,A'], ['--delimiter', '\t']),
            # A heading row.
            ('code,"la,bel"\r\n01,A\r\n', ['01,A'], ['--header']),
            (',label\r\n01,A\r\n', ['01,A'], ['--header']),
            ('code\r\n', [], ['--header']),
            ('', [], []),
            # What a table cannot hold, replaced.
            ('01,"a,b+c",Ω≥\r\n', ['01,a;b;c,;;'], ['--replace', ';']),
            ('01,"a,b"\r\n', ['01,a·b'], ['--replace', '·']),
            ('01,"a,b"\r\n'.encode('cp1252'), ['01,a b'], ['--encoding', 'cp1252', '--replace', ' ']),
            # As long as a line may be.
            ('01,' + 'é' * 1019, ['01,' + 'é' * 1019], []),
        ]
        for content, data, options in rows:
            with self.subTest(content=content[:30], options=options):
                self.expect_table(content, *data, options=options)

    def test_what_cannot_be_a_table_is_refused_with_its_place(self):
        place = 'list.csv:2: field '
        rows = [
            ('01,A\r\n02,"a,b"\r\n', [], place + '2: a ",", which separates fields, in "a,b"'),
            ('01,A\r\n02,B,a+b\r\n', [], place + '3: a "+", which separates fields, in "a+b"'),
            ('01,A\r\n0Ω,B\r\n', [], place + '1: "Ω" is no character of CP1252'),
            (b'01,A\r\n02,\xE9t\xE9\r\n', [], place + '2: "été" is not UTF-8 (--encoding cp1252?)'),
            ('01,A\r\n02,"a\r\nb"\r\n', [], place + '2: a line end inside quotes'),
            ('01,A\r\n02,"a\nb"\r\n', ['--replace', ' '], place + '2: a line end inside quotes'),
            ('01,A\r\n02,"ab\r\n', [], place + '2: its quote is never closed'),
            ('01,A\r\n02,"a"b\r\n', [], place + '2: further text behind its closing quote'),
            ('01,A\r\n02,a"b"\r\n', [], place + '2: a quote in a field without quotes'),
            ('01,A\r\n02,a\0b\r\n', [], place + '2: a NUL'),
            ('01,A\r\n,B\r\n', [], place + '1: the code is empty'),
            ('01;A\r\n;;\r\n', ['--delimiter', ';'], place + '1: the code is empty'),
            ('\n,B\n', [], place + '1: the code is empty'),
            ('01,A\r\n#FIN\r\n', [], place + '1: "#FIN" would count as the mark "#FIN"'),
            ('01,A\r\n"#DEBUT",x\r\n', [], place + '1: "#DEBUT" would count as the mark "#DEBUT"'),
            ('01,A\r\n????,x\r\n', [], place + '1: "????" would count as the mark "#FIN"'),
            ('01,A\n02,' + 'x' * 1020, [], place + '2: the line has 1023 characters'),
            ('\uFEFF01,é\r\n', ['--encoding', 'cp1252'], 'list.csv: is UTF-8, as the mark'),
            ('01,A\r02,"\r', [], place + '2: its quote is never closed'),
        ]
        for content, options, err in rows:
            with self.subTest(content=content[:30]):
                self.expect_no_table(content, *options, err=err)

    def test_what_is_wrong_on_the_command_line_is_refused(self):
        rows = [
            (['--encoding', 'latin9'], 'import: --encoding has to be'),
            (['--delimiter', ';;'], 'import: --delimiter has to be'),
            (['--delimiter', '"'], 'import: --delimiter has to be'),
            (['--delimiter', ''], 'import: --delimiter has to be'),
            (['--delimiter', 'é'], 'import: --delimiter has to be'),
            (['--replace', ''], 'import: --replace has to be one character'),
            (['--replace', 'ab'], 'import: --replace has to be one character'),
            (['--replace', ','], '",": a "," separates fields'),
            (['--replace', 'Ω'], '"Ω": "Ω" is no character'),
        ]
        for options, err in rows:
            with self.subTest(options=options):
                self.expect_no_table('01,A\r\n', *options, err=err)
        self.expect_refused('import', 'list.csv', 'actes.tab', '--title', 'T', err='--version is')
        self.expect_refused('import', 'list.csv', 'actes.tab', '--title', '', '--version', '1',
                            err='title cannot be empty')
        self.expect_refused('import', 'list.csv', 'actes.tab', '--title', 'a,b', '--version', '1',
                            err='separates fields')
        self.expect_refused('import', 'list.csv', 'actes.tab', '--title', 'Version: 1', '--version',
                            '1', err='would count as the version')

    def test_an_older_table_gives_way_as_a_whole_and_keeps_its_mode_and_its_link(self):
        self.put('09,Neuf', '10,Dix', title='Autre')
        self.table.chmod(0o640)
        (self.folder / 'link.tab').symlink_to('actes.tab')
        self.csv('01,A\r\n')
        self.expect(0, 'import', 'list.csv', 'link.tab', *HEADING)
        self.assertEqual(self.table.read_bytes(), table_bytes('01,A'))
        self.assertEqual(stat.S_IMODE(self.table.stat().st_mode), 0o640)
        self.assertTrue((self.folder / 'link.tab').is_symlink())
        self.assertEqual(self.files().keys(), {'actes.tab', 'link.tab', 'list.csv'})

    def test_a_table_is_no_csv_of_itself(self):
        self.put('01,A')
        (self.folder / 'link.tab').symlink_to('actes.tab')
        (self.folder / 'other.tab').hardlink_to(self.table)
        for csv_file, table in (('actes.tab', 'actes.tab'), ('actes.tab', './link.tab'),
                                ('link.tab', 'actes.tab'), ('other.tab', 'actes.tab')):
            with self.subTest(csv=csv_file, table=table):
                self.expect_refused('import', csv_file, table, *HEADING,
                                    err=f'{table}: is the CSV file itself')

    def test_a_path_that_leaves_no_room_beside_it_is_refused_by_its_name(self):
        csv_file = self.csv('01,A\r\n')
        for name, longest in ('a.tab', 237), ('x' * 16 + '.tab', 252), ('z' * 30 + '.tab', 253):
            for length in longest, longest + 1:
                with self.subTest(name=name, length=length):
                    rest = length - len(str(self.folder.resolve())) - len(name) - 2
                    table = self.folder / (name[0] * rest) / name
                    table.parent.mkdir()
                    if length == longest:
                        self.expect(0, 'import', csv_file, table, *HEADING)
                        self.assertEqual(table.read_bytes(), table_bytes('01,A'))
                    else:
                        self.expect(2, 'import', csv_file, table, *HEADING,
                                    err=f'{name}: the path is longer than {longest} bytes')
                        self.assertEqual(list(table.parent.iterdir()), [])

    def test_a_link_that_leads_nowhere_stays(self):
        self.csv('01,A\r\n')
        self.put('01,A')
        for target in 'nowhere', 'no/where':
            with self.subTest(target=target):
                (self.folder / 'link').unlink(missing_ok=True)
                (self.folder / 'link').symlink_to(target)
                for arguments in (['import', 'list.csv', 'link', *HEADING],
                                  ['export', 'actes.tab', '--output', 'link'],
                                  ['set', 'link', '01', '1', 'B']):
                    self.expect_refused(*arguments, err='link: is a link that leads nowhere')
                self.assertEqual((self.folder / 'link').readlink().as_posix(), target)

    def test_places_that_cannot_be_written_are_refused(self):
        self.csv('01,A\r\n')
        self.expect_refused('import', 'list.csv', '.', *HEADING, err='Is a directory')
        self.expect_refused('import', 'list.csv', 'no/actes.tab', *HEADING, err='No such file')
        self.expect_refused('import', 'list.csv', '/dev/null', *HEADING, err='no regular file')
        self.expect_refused('import', 'missing.csv', 'actes.tab', *HEADING, err='missing.csv: No ')


def database_of(script):
    """The table, its columns and its rows that psql makes of a script, which has to be written as the
    exports are: whatever else stands in it raises."""
    name, columns, names, data, indexed = re.fullmatch(
        r"""\\set ON_ERROR_STOP on
SET client_encoding = 'UTF8';
BEGIN;
CREATE TABLE "(\w{1,58})" \(([^()]*)\);
COPY "\1" \(([^()]*)\) FROM stdin;
((?:.*\n)*?)\\\.
CREATE INDEX "\1_code" ON "\1" \("(\w+)"\);
COMMIT;
""", script).groups()
    declared = [re.fullmatch(r'"(\w+)" text', column)[1] for column in columns.split(', ')]
    assert ', '.join(f'"{column}"' for column in declared) == names, names
    assert indexed == declared[0] == 'code', indexed
    rows = [tuple(map(copied, line.split('\t'))) for line in data.split('\n')[:-1]]
    assert all(len(row) == len(declared) for row in rows), declared
    return name, declared, rows


def copied(field):
    """A field as COPY reads it: a backslash stands only in front of what it changes."""
    if field == '\\N':
        return None
    assert not re.search('[\r\0]', field), field
    return re.sub(r'\\(.?)', lambda escape: {'\\': '\\', 't': '\t', 'r': '\r'}[escape[1]], field)


class Export(Workbench):
    def export(self, *options):
        """The rows of the CSV as another reader takes them."""
        self.expect(0, 'export', 'actes.tab', '--output', 'out.csv', *options, out=[])
        content = (self.folder / 'out.csv').read_bytes()
        self.assertEqual(content.count(b'\n'), content.count(b'\r\n'))
        return list(csv.reader(io.StringIO(content.decode('utf-8'), newline='')))

    def test_csv_as_other_programs_read_it(self):
        self.put('01,d"Or;', '02+Œil,', '', '03,"x"')
        rows = [['01', 'd"Or;'], ['02', 'Œil', ''], [''], ['03', '"x"']]
        self.assertEqual(self.export(), rows)
        self.assertEqual(self.export('--header'), [['code', 'column1', 'column2'], *rows])
        self.assertEqual(self.expect(0, 'export', 'actes.tab').lines[0], '01,"d""Or;"')
        # An empty code is one knowingly.
        self.put(',A', '')
        self.assertEqual(self.expect(0, 'export', 'actes.tab').lines, ['"",A', '""'])
        self.put('01,d"Or;')
        self.assertEqual(self.expect(0, 'export', 'actes.tab', '--delimiter', ';').lines[0],
                         '01;"d""Or;"')

    def test_without_output_it_goes_to_standard_output(self):
        self.put('01,é')
        self.assertEqual(self.expect(0, 'export', 'actes.tab').out.encode(), '01,é\r\n'.encode())

    def expect_same_again(self, *options):
        before = self.table.read_bytes()
        title, version, _ = before.split(b'\r\n', 2)
        title, version = title.decode('cp1252'), version.decode()
        self.expect(0, 'export', 'actes.tab', '--output', 'out.csv', *options)
        self.expect(0, 'import', 'out.csv', 'again.tab', '--title', title, '--version',
                    version.removeprefix('Version: '), *options)
        self.assertEqual((self.folder / 'again.tab').read_bytes(), before)

    def test_import_of_an_export_gives_the_same_bytes(self):
        for table in real_tables():
            with self.subTest(table=table.name):
                self.table.write_bytes(table.read_bytes())
                self.expect_same_again()

    def test_import_of_an_export_gives_any_bytes_again(self):
        chosen = random.Random(3)
        letters = [bytes([byte]) for byte in range(1, 256) if byte not in b'\r\n+']
        for delimiter in ',', ';', '\\t', '|':
            data = b''.join(b''.join(chosen.choices(letters, k=chosen.randrange(200))) + b'\r\n'
                            for _ in range(100))
            self.table.write_bytes(b'Titre\r\nVersion: 1\r\n#DEBUT\r\n' + data + b'#FIN\r\n')
            with self.subTest(delimiter=delimiter):
                self.expect_same_again('--delimiter', delimiter)
                self.expect_same_again('--delimiter', delimiter, '--header')

    def test_what_would_be_lost_is_not_exported(self):
        self.put('01,A', '02,' + 'x' * 1020)
        self.expect_refused('export', 'actes.tab', err='actes.tab:5: of 1023 characters only 1022')
        self.table.write_bytes(table_bytes('01,A').replace(b',A', b',\0A'))
        self.expect_refused('export', 'actes.tab', err='actes.tab:4: of 5 characters only 3')

    def test_wrong_uses_are_refused(self):
        self.put('01,A')
        rows = [
            (['--format', 'xml'], '--format has to be'),
            (['--format', 'sqlite'], 'needs --output'),
            (['--delimiter', ''], '--delimiter has to be'),
            (['--format', 'postgres', '--header'], 'for csv'),
            (['--output', 'actes.tab'], 'actes.tab: is the table itself'),
            (['--output', '.'], 'Is a directory'),
            (['--output', 'no/x.csv'], 'No such file'),
            (['--output', '/dev/stdout'], '/dev/stdout: is no regular file'),
        ]
        for options, err in rows:
            with self.subTest(options=options):
                self.expect_refused('export', 'actes.tab', *options, err=err)

    def test_a_new_file_gets_the_usual_rights(self):
        self.put('01,A')
        self.export()
        mask = os.umask(0)
        os.umask(mask)
        mode = stat.S_IMODE((self.folder / 'out.csv').stat().st_mode)
        self.assertEqual(mode, 0o666 & ~mask)

    def database(self, statement):
        connection = sqlite3.connect(self.folder / 'out.db')
        rows = connection.execute(statement).fetchall()
        connection.close()
        return rows

    def test_sqlite_gets_a_table_with_an_index_on_the_code(self):
        self.put("01,L'œil\"d;", '02+Visite,,x', '', '01,B')
        (self.folder / 'out.db').write_bytes(b'an older one')
        self.expect(0, 'export', 'actes.tab', '--format', 'sqlite', '--output', 'out.db', out=[])
        self.assertEqual(self.database('SELECT * FROM actes'),
                         [('01', 'L\'œil"d;', None, None), ('02', 'Visite', '', 'x'),
                          ('', None, None, None), ('01', 'B', None, None)])
        plan = self.database('EXPLAIN QUERY PLAN SELECT column1 FROM actes WHERE code = \'01\'')
        self.assertIn('USING INDEX actes_code', plan[0][3])
        self.assertEqual(self.database('PRAGMA integrity_check'), [('ok',)])

    def test_sqlite_has_all_of_real_tables(self):
        for table in real_tables():
            with self.subTest(table=table.name):
                lines = table.read_bytes().decode('cp1252').split('\r\n')[3:-2]
                self.expect(0, 'export', table, '--format', 'sqlite', '--output', 'out.db')
                self.assertEqual(self.database(f'SELECT * FROM {table.stem}'),
                                 [tuple(line.split(',')) for line in lines])

    def test_names_are_made_fit_for_databases(self):
        for name, expected in (("l'été 2.tab", 'l___t___2'), ('x' * 80 + '.tab', 'x' * 58),
                               ('.tab', 'codes'), ('sans', 'sans')):
            with self.subTest(name=name):
                (self.folder / name).write_bytes(table_bytes('01,A'))
                self.expect(0, 'export', name, '--format', 'sqlite', '--output', 'out.db')
                self.assertEqual(self.database('SELECT name FROM sqlite_master'),
                                 [(expected,), (expected + '_code',)])

    def test_postgres_gets_a_script_for_psql(self):
        self.put('01,L\'œil\\\t"d"', '02,,x', '\\.')
        out = self.expect(0, 'export', 'actes.tab', '--format', 'postgres').out
        self.assertEqual(out, '''\\set ON_ERROR_STOP on
SET client_encoding = 'UTF8';
BEGIN;
CREATE TABLE "actes" ("code" text, "column1" text, "column2" text);
COPY "actes" ("code", "column1", "column2") FROM stdin;
01\tL'œil\\\\\\t"d"\t\\N
02\t\tx
\\\\.\t\\N\t\\N
\\.
CREATE INDEX "actes_code" ON "actes" ("code");
COMMIT;
''')

    def expect_script(self, table):
        """The script for psql of a table has all its rows."""
        out = self.expect(0, 'export', table, '--format', 'postgres').out
        lines = table.read_bytes().decode('cp1252').split('\r\n')[3:-2]
        rows = [re.split('[,+]', line) for line in lines]
        name, columns, got = database_of(out)
        self.assertEqual((name, len(columns)), (table.stem, max(map(len, rows))))
        self.assertEqual(got, [(*row, *[None] * (len(columns) - len(row))) for row in rows])

    def test_a_strict_reader_finds_all_rows_in_the_script(self):
        for table in real_tables():
            with self.subTest(table=table.name):
                self.expect_script(table)

    def test_a_strict_reader_finds_any_bytes_in_the_script(self):
        chosen = random.Random(5)
        pieces = [bytes([byte]) for byte in range(1, 256)
                  if byte not in b'\r\n\x81\x8D\x8F\x90\x9D']
        pieces += [b'\\', b'\t', b'\\.', b'\\N', b'\\t', b',', b"'", b'"'] * 12
        data = [b''.join(chosen.choices(pieces, k=chosen.randrange(100))) for _ in range(300)]
        lines = [b'Titre', b'Version: 1', b'#DEBUT', b'\\.', b'\\N', b'', *data, b'#FIN', b'']
        self.table.write_bytes(b'\r\n'.join(lines))
        self.expect_script(self.table)
