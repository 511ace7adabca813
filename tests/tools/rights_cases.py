# SPDX-License-Identifier: MIT
"""What may not be read or written: run by a user who has no other rights than a file's owner."""
import os

from workbench import Workbench, table_bytes

EDITS = [['set', 'actes.tab', '01', '1', 'B'], ['insert', 'actes.tab', '02'],
         ['delete', 'actes.tab', '01'], ['repair', 'actes.tab', '--title', 'T', '--version', 'V']]
IMPORT = ['import', 'list.csv', 'actes.tab', '--title', 'T', '--version', 'V']


class Rights(Workbench):
    def setUp(self):
        super().setUp()
        self.put('01,A')
        (self.folder / 'list.csv').write_bytes(b'02,B\r\n')
        self.addCleanup(os.chmod, self.folder, 0o700)

    def test_a_file_that_may_not_be_read_is_2(self):
        self.table.chmod(0)
        for arguments in (['check', 'actes.tab'], ['show', 'actes.tab'], ['list', 'actes.tab'],
                          ['find', 'actes.tab', '01'], ['search', 'actes.tab', 'A'],
                          ['backup', 'actes.tab'], ['diff', 'actes.tab', 'actes.tab'],
                          ['export', 'actes.tab'], IMPORT, *EDITS):
            with self.subTest(arguments=arguments):
                self.expect(2, *arguments, out=[], err='actes.tab: Permission denied')

    def test_a_table_that_may_not_be_written_stays(self):
        self.table.chmod(0o444)
        for arguments in *EDITS, IMPORT:
            with self.subTest(arguments=arguments):
                self.expect_refused(*arguments, err='actes.tab: Permission denied')

    def test_a_folder_that_may_not_be_written_is_told(self):
        self.folder.chmod(0o500)
        for arguments in (*EDITS, IMPORT, ['backup', 'actes.tab'],
                          ['export', 'actes.tab', '--output', 'out.csv'],
                          ['export', 'actes.tab', '--format', 'sqlite', '--output', 'out.db']):
            with self.subTest(arguments=arguments):
                self.expect_refused(*arguments, err=f'{self.folder.resolve()}')
        self.assertEqual(self.table.read_bytes(), table_bytes('01,A'))
