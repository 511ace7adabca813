# SPDX-License-Identifier: MIT
"""What may not be read or written: run by a user who has no other rights than a file's owner. And what
a table that others may read and write keeps of that."""
import errno
import os
import stat
import struct

from workbench import Workbench, table_bytes

EDITS = [['set', 'actes.tab', '01', '1', 'B'], ['insert', 'actes.tab', '02'],
         ['delete', 'actes.tab', '01'], ['repair', 'actes.tab', '--title', 'T', '--version', 'V']]
IMPORT = ['import', 'list.csv', 'actes.tab', '--title', 'T', '--version', 'V']


class Rights(Workbench):
    debug = '0'

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


# An access list as the system stores it: the owner, user 12 and everyone in the group up to the mask
# may write, others nothing.
NOBODY = 0xFFFFFFFF
LIST = struct.pack('<I', 2) + b''.join(struct.pack('<HHI', *entry) for entry in (
    (0x01, 6, NOBODY), (0x02, 6, 12), (0x04, 4, NOBODY), (0x10, 6, NOBODY), (0x20, 0, NOBODY)))
ATTRIBUTE = 'system.posix_acl_access'


class AccessList(Workbench):
    def setUp(self):
        super().setUp()
        (self.folder / 'list.csv').write_bytes(b'02,B\r\n')
        self.put('01,A')
        self.give(self.table, ATTRIBUTE)

    def give(self, path, attribute, value=LIST):
        try:
            os.setxattr(path, attribute, value)
        except OSError as error:
            if error.errno != errno.ENOTSUP:
                raise
            self.skipTest(f'no {attribute} on this disk')

    def test_what_replaces_a_table_keeps_its_list(self):
        for arguments in IMPORT, *EDITS[:3]:
            with self.subTest(arguments=arguments):
                self.put('01,A')
                self.expect(0, *arguments)
                self.assertEqual(os.getxattr(self.table, ATTRIBUTE), LIST)
                self.assertEqual(stat.S_IMODE(self.table.stat().st_mode), 0o660)

    def test_an_export_over_a_file_keeps_its_list_too(self):
        (self.folder / 'out.csv').write_bytes(b'')
        self.give(self.folder / 'out.csv', ATTRIBUTE)
        self.give(self.folder / 'out.csv', 'user.origin', b'poste 3')
        self.expect(0, 'export', 'actes.tab', '--output', 'out.csv')
        self.assertEqual(os.getxattr(self.folder / 'out.csv', ATTRIBUTE), LIST)
        self.assertEqual(os.getxattr(self.folder / 'out.csv', 'user.origin'), b'poste 3')

    def test_a_table_without_a_list_gets_none_from_its_folder(self):
        plain = self.folder / 'plain.tab'
        plain.write_bytes(table_bytes('01,A'))
        plain.chmod(0o640)
        self.give(self.folder, 'system.posix_acl_default')
        self.expect(0, 'import', 'list.csv', 'plain.tab', *IMPORT[3:])
        self.assertNotIn(ATTRIBUTE, os.listxattr(plain))
        self.assertEqual(stat.S_IMODE(plain.stat().st_mode), 0o640)
