# SPDX-License-Identifier: MIT
"""What `show`, `list`, `find`, `search` and `diff` print."""
from workbench import Workbench, table_bytes

LINES = ['01,Consultation,01/01/95,31/12/99', '01,Séance,01/01/00,31/12/49', '02+Visite',
         '0?,Œuvre d’art', '13,,x', '#F']


class Look(Workbench):
    def setUp(self):
        super().setUp()
        self.put(*LINES)

    def test_show_prints_every_line_in_utf_8(self):
        self.expect(0, 'show', 'actes.tab', out=['Actes', 'Version: 2', '#DEBUT', *LINES, '#FIN'])

    def test_list_prints_the_codes_of_data_lines(self):
        self.expect(0, 'list', 'actes.tab', out=['01', '01', '02', '0?', '13', '#F'])
        self.put()
        self.expect(0, 'list', 'actes.tab', out=[])

    def test_find(self):
        rows = [
            (['01'], [LINES[0]]),
            (['02'], ['02+Visite']),
            (['01', '--all'], [LINES[0], LINES[1], LINES[3]]),
            # "?" is any character on both sides.
            (['0?', '--all', '--column', '1'],
             ['Consultation', 'Séance', 'Visite', 'Œuvre d’art']),
            (['09'], [LINES[3]]),
            (['01', '--column', '0'], ['01']),
            (['02', '--column', '1'], ['Visite']),
            (['02', '--column', '7'], ['']),
            (['13', '--column', '2'], ['x']),
            # The first one in force, both days included.
            (['01', '--date', '20030101', '--dates', '2'], [LINES[1]]),
            (['01', '--date', '19991231', '--dates', '2'], [LINES[0]]),
            (['01', '--date', '20000101', '--dates', '2'], [LINES[1]]),
            # Where there is no date a line is always in force.
            (['01', '--date', '19940101', '--dates', '2'], [LINES[3]]),
            (['01', '--date', '19960101', '--dates', '2', '--all'], [LINES[0], LINES[3]]),
        ]
        for arguments, out in rows:
            with self.subTest(arguments=arguments):
                self.expect(0, 'find', 'actes.tab', *arguments, out=out)

    def test_not_found_is_1(self):
        self.put(*LINES[:2])
        # Neither the heading nor a mark is a data line.
        for arguments in ['99'], ['Actes'], ['#FIN'], ['Version: 2'], [''], ['Ω'], \
                ['01', '--date', '19940101', '--dates', '2']:
            with self.subTest(arguments=arguments):
                self.expect(1, 'find', 'actes.tab', *arguments, out=[], err='not found')
        for label in 'Actes', 'séance', 'Consult', '', '01', 'Ω':
            with self.subTest(label=label):
                self.expect(1, 'search', 'actes.tab', label, out=[], err='not found')

    def test_search(self):
        self.put(*LINES, '04,Visite,SÉANCE')
        rows = [
            (['Visite'], ['02+Visite']),
            (['Visite', '--all'], ['02+Visite', '04,Visite,SÉANCE']),
            (['V?site'], ['02+Visite']),
            (['Œuvre d’art'], [LINES[3]]),
            (['x', '--column', '2'], ['13,,x']),
            (['02', '--column', '0'], ['02+Visite']),
            # As the library takes small letters, and as a person does.
            (['seance', '--ignore-case'], [LINES[1]]),
            (['SÉANCE', '--ignore-case'], [LINES[1]]),
            (['œUVRE D’ART', '--ignore-case'], [LINES[3]]),
            (['séance', '--ignore-case', '--column', '2'], ['04,Visite,SÉANCE']),
        ]
        for arguments, out in rows:
            with self.subTest(arguments=arguments):
                self.expect(0, 'search', 'actes.tab', *arguments, out=out)

    def test_only_1022_characters_of_a_line_and_none_behind_a_nul_are_seen(self):
        self.table.write_bytes(table_bytes('01,' + 'x' * 2000, '02,A')
                               .replace(b'02,A', b'02,A\0,B'))
        self.expect(0, 'find', 'actes.tab', '01', out=['01,' + 'x' * 1019])
        self.expect(0, 'find', 'actes.tab', '02', out=['02,A'])
        self.expect(0, 'show', 'actes.tab')

    def test_line_feeds_are_no_line_ends(self):
        self.table.write_bytes(table_bytes('01,A', '02,B').replace(b'A\r\n', b'A\n'))
        self.expect(0, 'list', 'actes.tab', out=['01'])
        self.expect(0, 'find', 'actes.tab', '01', out=['01,A02,B'])

    def test_a_file_without_marks_is_no_table(self):
        self.table.write_bytes(b'01,A\r\n')
        for arguments in (['list', 'actes.tab'], ['find', 'actes.tab', '01'],
                          ['search', 'actes.tab', 'A'], ['diff', 'actes.tab', 'actes.tab'],
                          ['export', 'actes.tab'], ['set', 'actes.tab', '01', '1', 'B'],
                          ['insert', 'actes.tab', '02'], ['delete', 'actes.tab', '01']):
            with self.subTest(arguments=arguments):
                self.expect_refused(*arguments, err='actes.tab: is no table')

    def test_diff_goes_by_code_whatever_the_order(self):
        (self.folder / 'new.tab').write_bytes(
            table_bytes('13,,x', '02,Visite', '01,Consultation,01/01/95,30/06/98',
                        '01,Séance,01/01/00,31/12/49', '07,Neuf', '0?,Œuvre d’art',
                        title='Autre', version='3'))
        self.expect(1, 'diff', 'actes.tab', 'new.tab', out=[
            'removed: #F',
            'changed: 01,Consultation,01/01/95,31/12/99',
            '     to: 01,Consultation,01/01/95,30/06/98',
            'added:   07,Neuf'])

    def test_diff_of_equal_tables_is_silent(self):
        (self.folder / 'new.tab').write_bytes(
            table_bytes(*reversed(LINES)).replace(b'02+V', b'02,V'))
        self.expect(0, 'diff', 'actes.tab', 'new.tab', out=[])

    def test_what_diff_would_not_see_is_refused(self):
        self.put('01,A')
        for line in '01,' + 'x' * 1020, '01,A\0B':
            (self.folder / 'new.tab').write_bytes(table_bytes('00,Z', line))
            for tables in ('new.tab', 'actes.tab'), ('actes.tab', 'new.tab'), ('new.tab', 'new.tab'):
                with self.subTest(line=line[:6], tables=tables):
                    self.expect_refused('diff', *tables, err='new.tab:5: of ')

    def test_diff_counts_how_often_a_line_stands_there(self):
        self.put('01,A', '01,A')
        (self.folder / 'new.tab').write_bytes(table_bytes('01,A'))
        self.expect(1, 'diff', 'actes.tab', 'new.tab', out=['removed: 01,A'])
        self.expect(1, 'diff', 'new.tab', 'actes.tab', out=['added:   01,A'])
