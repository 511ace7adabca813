# SPDX-License-Identifier: MIT
"""What `set`, `insert`, `delete`, `backup` and `repair` make of a table."""
import os
import stat
import subprocess

import workbench
from workbench import Workbench, real_tables, table_bytes

LINES = ['01,Consultation,23', '02,Visite,30', '01,Séance,12', '03,Acte,']


class Edit(Workbench):
    def setUp(self):
        super().setUp()
        self.put(*LINES)

    def test_set_writes_a_column_of_the_first_line_of_a_code(self):
        rows = [
            (['01', '1', 'Visite à domicile'], 0, '01,Visite à domicile,23'),
            (['01', '2', 'Œil'], 0, '01,Consultation,Œil'),
            (['02', '0', '09'], 1, '09,Visite,30'),
            (['01', '2', '13', '--line', '6'], 2, '01,Séance,13'),
            # An empty column is a column, too.
            (['03', '2', '31/12/99'], 3, '03,Acte,31/12/99'),
            (['02', '1', ''], 1, '02,,30'),
            # A text that begins with a dash.
            (['--', '02', '2', '-5'], 1, '02,Visite,-5'),
        ]
        for arguments, index, line in rows:
            with self.subTest(arguments=arguments):
                self.put(*LINES)
                options = arguments[:1] if arguments[0] == '--' else []
                self.expect(0, 'set', *options, 'actes.tab', *arguments[len(options):], out=[])
                self.assertEqual(self.data(), LINES[:index] + [line] + LINES[index + 1:])
        self.assertEqual(self.files().keys(), {'actes.tab'})

    def test_a_column_behind_an_empty_one_can_be_written(self):
        self.put('01,,x', '02,B,y')
        self.expect(0, 'set', 'actes.tab', '01', '2', 'z')
        self.assertEqual(self.data(), ['01,,z', '02,B,y'])

    def test_insert(self):
        rows = [
            (['04', 'Neuf', '5'], 4, '04,Neuf,5'),
            (['04', 'Neuf'], 4, '04,Neuf,Néant'),
            (['04', 'Neuf', '7', '--after', '01'], 1, '04,Neuf,7'),
            (['04', 'Neuf', '7', '--after', '03'], 4, '04,Neuf,7'),
            (['04', '', '7'], 4, '04,,7'),
        ]
        for arguments, index, line in rows:
            with self.subTest(arguments=arguments):
                self.put(*LINES)
                self.expect(0, 'insert', 'actes.tab', *arguments, out=[])
                self.assertEqual(self.data(), LINES[:index] + [line] + LINES[index:])

    def test_insert_with_a_code_alone_fills_all_columns(self):
        self.expect(0, 'insert', 'actes.tab', '04')
        self.assertEqual(self.data()[-1], '04,Néant,Néant')

    def test_edits_at_the_same_time_lose_no_line_of_each_other(self):
        new = [f'1{n},Neuf,{n}' for n in range(8)]
        edits = [subprocess.Popen([workbench.program, 'insert', self.table, *line.split(',')])
                 for line in new]
        self.assertEqual([edit.wait() for edit in edits], [0] * len(edits))
        self.assertEqual(sorted(self.data()), sorted(LINES + new))

    def test_what_the_library_would_drop_of_another_line_is_no_edit_worth(self):
        for other in ['02,' + 'a' * 1500, '02,A\0,B', '02,A\n02,B']:
            self.put('01,A', other)
            for edit in (['set', 'actes.tab', '01', '1', 'B'], ['insert', 'actes.tab', '03'],
                         ['delete', 'actes.tab', '01'],
                         ['repair', 'actes.tab', '--title', 'T', '--version', 'V']):
                with self.subTest(other=other[:6], edit=edit[0]):
                    self.expect_refused(*edit, err='actes.tab:5: ')

    def test_insert_into_an_empty_table(self):
        self.put()
        self.expect(0, 'insert', 'actes.tab', '01', 'A', 'B', 'C')
        self.assertEqual(self.data(), ['01,A,B,C'])

    def test_insert_where_the_last_mark_is_missing(self):
        for data in ([], ['01'], ['01,A'], ['00,Y,Z', '01,A,B'], ['01,A,'], ['01,,B'], ['']):
            with self.subTest(data=data):
                self.table.write_bytes(table_bytes(*data)[:-6])
                self.expect(0, 'insert', 'actes.tab', '02')
                new = ','.join(['02'] + ['Néant'] * (data[-1].count(',') if data else 0))
                self.assertEqual(self.table.read_bytes(), table_bytes(*data, new)[:-6])

    def test_delete(self):
        for arguments, left in ([['01'], LINES[1:]],
                                [['01', '--line', '6'], LINES[:2] + LINES[3:]],
                                [['01', '--all'], [LINES[1], LINES[3]]],
                                [['03'], LINES[:3]]):
            with self.subTest(arguments=arguments):
                self.put(*LINES)
                self.expect(0, 'delete', 'actes.tab', *arguments, out=[])
                self.assertEqual(self.data(), left)

    def test_what_is_not_there_is_1_and_changes_nothing(self):
        for arguments in (['set', 'actes.tab', '99', '1', 'x'], ['delete', 'actes.tab', '99'],
                          ['set', 'actes.tab', '01', '1', 'x', '--line', '5'],
                          ['delete', 'actes.tab', '01', '--line', '99'],
                          ['insert', 'actes.tab', '04', '--after', '99'],
                          # No character stands for another where something is changed.
                          ['delete', 'actes.tab', '0?', '--all']):
            with self.subTest(arguments=arguments):
                before = self.files()
                self.expect(1, *arguments, out=[])
                self.assertEqual(self.files(), before)

    def test_a_code_with_a_question_mark_is_changed_by_its_name(self):
        self.put('0?,A', '01,B')
        self.expect(0, 'delete', 'actes.tab', '0?')
        self.assertEqual(self.data(), ['01,B'])

    def test_what_cannot_stand_in_a_table_is_refused(self):
        edits = [['set', 'actes.tab', '01', '1'], ['set', 'actes.tab', '01', '0'],
                 ['insert', 'actes.tab'], ['insert', 'actes.tab', '04'],
                 ['repair', 'actes.tab', '--version', '1', '--title'],
                 ['repair', 'actes.tab', '--title', 'T', '--version']]
        for edit in edits:
            for text, why in (('a,b', '","'), ('a+b', '"+"'), ('a\rb', 'line end'),
                              ('a\nb', 'line end'), ('Ωmega', '"Ω" is no character of CP1252'),
                              (b'\xE9t\xE9', 'not UTF-8'), ('x' * 1023, '1022 are read')):
                with self.subTest(edit=edit, text=text[:10]):
                    padding = ['A'] if edit == ['insert', 'actes.tab'] else []
                    self.expect_refused(*edit, text, *padding, err=why)

    def test_further_refusals(self):
        rows = [
            (['set', 'actes.tab', '01', '3', 'x'], 'actes.tab:4: no column 3, the line has 2'),
            (['set', 'actes.tab', '01', 'x', 'x'], 'COLUMN has to be a number'),
            (['set', 'actes.tab', '01', '0', ''], 'a code cannot be empty'),
            (['set', 'actes.tab', '01', '0', '#FIN'], 'mark "#FIN"'),
            (['set', 'actes.tab', '01', '0', '#DEB?T'], 'mark "#DEBUT"'),
            (['set', 'actes.tab', '01', '1', 'x', '--line', '0'], '--line has to be a number'),
            (['insert', 'actes.tab', '', 'x'], 'a code cannot be empty'),
            (['insert', 'actes.tab', '????', 'x'], 'mark "#FIN"'),
            (['insert', 'actes.tab', '04', 'a', 'b', 'c'], '3 columns given'),
            (['delete', 'actes.tab', '01', '--all', '--line', '4'], 'exclude each other'),
            (['repair', 'actes.tab', '--title', '#FIN', '--version', '1'], 'mark "#FIN"'),
            (['repair', 'actes.tab', '--title', '', '--version', '1'], 'title cannot be empty'),
            (['repair', 'actes.tab', '--title', 'Version: 3', '--version', '1'],
             '"Version: 3" would count as the version'),
            (['repair', 'actes.tab', '--title', 'T'], '--version is missing'),
        ]
        for arguments, why in rows:
            with self.subTest(arguments=arguments):
                self.expect_refused(*arguments, err=why)

    def test_an_edit_keeps_link_mode_and_everything_else(self):
        link = self.folder / 'link.tab'
        link.symlink_to('actes.tab')
        self.table.chmod(0o640)
        self.expect(0, 'set', 'link.tab', '02', '1', 'X')
        self.assertTrue(link.is_symlink())
        self.assertEqual(stat.S_IMODE(self.table.stat().st_mode), 0o640)
        self.assertEqual(self.data()[1], '02,X,30')

    def test_a_file_that_an_edit_would_use_up_is_told(self):
        (self.folder / 'actes.ta_').write_bytes(b'x' * 1000)
        for arguments in (['set', 'actes.tab', '01', '1', 'x'], ['insert', 'actes.tab', '04'],
                          ['delete', 'actes.tab', '01'],
                          ['repair', 'actes.tab', '--title', 'T', '--version', 'V']):
            with self.subTest(arguments=arguments):
                self.expect_refused(*arguments, err='actes.ta_: has the name that an edit uses')
        self.expect(0, 'backup', 'actes.tab')

    def test_a_link_where_an_edit_writes_is_told_wherever_it_leads(self):
        for target in 'nowhere', 'actes.tab':
            with self.subTest(target=target):
                (self.folder / 'actes.ta_').unlink(missing_ok=True)
                (self.folder / 'actes.ta_').symlink_to(target)
                self.expect_refused('set', 'actes.tab', '01', '1', 'x',
                                    err='actes.ta_: has the name that an edit uses')
                self.assertTrue((self.folder / 'actes.ta_').is_symlink())

    def test_a_path_may_hold_what_a_path_may_hold(self):
        self.debug = '0'  # the library would tell that it takes the table's name for a whole path
        folder = self.folder / "d'été: $x" / '-l:'
        folder.mkdir(parents=True)
        table = folder / 'a:b.tab'
        table.write_bytes(table_bytes('01,A'))
        self.expect(0, 'set', table, '01', '1', 'B')
        self.expect(0, 'backup', table)
        self.assertEqual(table.read_bytes(), table_bytes('01,B'))
        self.assertEqual((folder / 'a:b.bak').read_bytes(), table_bytes('01,B'))

    def test_a_path_that_is_too_long_for_the_library_is_refused(self):
        folder = self.folder / ('x' * 200) / ('y' * 100)
        folder.mkdir(parents=True)
        table = folder / 'a.tab'
        table.write_bytes(table_bytes('01,A'))
        self.expect(0, 'find', table, '01', out=['01,A'])
        self.expect(2, 'set', table, '01', '1', 'B', err='longer than 253 bytes')
        self.assertEqual(table.read_bytes(), table_bytes('01,A'))

    def test_what_edits_have_made_of_real_tables_is_what_diff_tells(self):
        for table in real_tables():
            with self.subTest(table=table.name):
                self.table.write_bytes(table.read_bytes())
                lines = self.data()
                middle, last = len(lines) // 2, len(lines) - 1
                code, _, *rest = lines[middle].split(',')
                changed = ','.join([code, 'Œuvre', *rest])
                added = ','.join(['éé', 'Œuvre', *rest])
                self.expect(0, 'set', 'actes.tab', code, '1', 'Œuvre', '--line', str(middle + 4))
                self.expect(0, 'delete', 'actes.tab', lines[last].split(',')[0], '--line',
                            str(last + 4))
                self.expect(0, 'insert', 'actes.tab', *added.split(','), '--after',
                            lines[0].split(',')[0])
                self.assertEqual(self.data(), [lines[0], added, *lines[1:middle], changed,
                                               *lines[middle + 1:last]])
                found = self.expect(1, 'diff', table, 'actes.tab').lines
                self.assertEqual(sorted(found), sorted([
                    f'changed: {lines[middle]}', f'     to: {changed}', f'removed: {lines[last]}',
                    f'added:   {added}']))

    def test_backup_replaces_an_older_one(self):
        (self.folder / 'actes.bak').write_bytes(b'old')
        self.expect(0, 'backup', 'actes.tab', out=[])
        self.assertEqual(self.files(), {'actes.tab': table_bytes(*LINES),
                                        'actes.bak': table_bytes(*LINES)})
        self.expect_refused('backup', 'actes.bak', err='has no back-up')
        os.rename(self.table, self.folder / 'tab')
        self.expect_refused('backup', 'tab', err='has no back-up')

    def test_a_backup_that_cannot_be_made_is_told(self):
        self.debug = '0'  # the library would tell why
        (self.folder / 'actes.bak').mkdir()
        self.expect_refused('backup', 'actes.tab', err='actes.bak: ')

    def test_repair_puts_the_heading_right(self):
        good = table_bytes(*LINES)
        lost_title = good.replace(b'Actes\r\n', b'')
        for broken in (good[19:], lost_title, good.replace(b'Version: 2\r\n', b''),
                       good.replace(b'Actes', b'Autre').replace(b': 2', b': 1'),
                       good.replace(b'Version: 2', b'x'), good, lost_title.replace(b'2', b'2,5', 1),
                       good.replace(b'Actes', b'A, B\n').replace(b': 2', b': 2+\n')):
            with self.subTest(broken=broken[:30]):
                self.table.write_bytes(broken)
                self.expect(0, 'repair', 'actes.tab', '--title', 'Actes', '--version', '2', out=[])
                self.assertEqual(self.table.read_bytes(), good)

    def test_a_heading_that_cannot_be_repaired_is_1(self):
        good = table_bytes(*LINES)
        for broken, why in ((good.replace(b'#DEBUT', b'#debut'), 'no line "#DEBUT"'),
                            (good.replace(b'#DEBUT', b'x\r\n#DEBUT'), 'in line 4'), (b'', 'no line'),
                            (b'01,A\r\n02\r\n#DEBUT\r\n#FIN\r\n', 'line 1 has several fields'),
                            (b'01\r\n02+B\r\n#DEBUT\r\n#FIN\r\n', 'line 2 has several fields'),
                            (b'01,A\r\n#DEBUT\r\n#FIN\r\n', 'line 1 has several fields'),
                            (b'Version: 3\r\n01\r\n#DEBUT\r\n#FIN\r\n', 'line 2 stands behind')):
            with self.subTest(broken=broken[:40]):
                self.table.write_bytes(broken)
                self.expect(1, 'repair', 'actes.tab', '--title', 'T', '--version', 'V', err=why)
                self.assertEqual(self.table.read_bytes(), broken)
