# SPDX-License-Identifier: MIT
"""A disk on which a table has no room a second time."""
from workbench import Workbench


class FullDisk(Workbench):
    debug = '0'

    def test_a_full_disk_is_told_and_leaves_every_file_as_it_was(self):
        self.put(*[f'{i:04},{"x" * 94}' for i in range(400)])
        (self.folder / 'list.csv').symlink_to('/dev/stdin')
        rows = b''.join(b'%04d,%s\r\n' % (i, b'y' * 94) for i in range(400))
        for arguments in (['set', 'actes.tab', '0001', '1', 'y'], ['insert', 'actes.tab', 'y'],
                          ['delete', 'actes.tab', '0001'], ['backup', 'actes.tab'],
                          ['repair', 'actes.tab', '--title', 'T', '--version', 'V'],
                          ['import', 'list.csv', 'actes.tab', '--title', 'T', '--version', 'V'],
                          ['import', 'list.csv', 'new.tab', '--title', 'T', '--version', 'V'],
                          ['export', 'actes.tab', '--output', 'out.csv'],
                          ['export', 'actes.tab', '--format', 'sqlite', '--output', 'out.db']):
            with self.subTest(arguments=arguments):
                before = self.table.read_bytes()
                result = self.run_tool(*arguments, input=rows)
                self.assertEqual((result.code, result.out), (2, ''), result.err)
                self.assertRegex(result.err, r'^korvel-tables: [^\n]+\n$')
                self.assertRegex(result.err, 'No space left|disk (be )?full|is full')
                self.assertEqual(self.table.read_bytes(), before)
                self.assertEqual({path.name for path in self.folder.iterdir()},
                                 {'actes.tab', 'list.csv'})
