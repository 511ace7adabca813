# SPDX-License-Identifier: MIT
"""The program finds what an application finds by the library."""
import ctypes
import random

import workbench
from workbench import Workbench, real_tables


class Agreement(Workbench):
    def test_of_the_real_tables_both_find_the_same_lines(self):
        library = ctypes.CDLL(workbench.library)
        ctypes.memmove(ctypes.addressof(ctypes.c_char.in_dll(library, 'szVolumes')), b'/\0', 2)
        out = ctypes.create_string_buffer(1024)
        chosen = random.Random(7)
        for path in real_tables():
            folder = str(path.parent)[1:].replace('/', ':').encode()
            library.setDirTables(folder)
            lines = path.read_bytes().decode('cp1252').split('\r\n')[3:-2]
            for line in chosen.sample(lines, 4):
                code = line.split(',')[0]
                with self.subTest(table=path.stem, code=code):
                    found = library.ZRV_Libelle_NC(code.encode('cp1252'), len(code), 1,
                                                   path.name.encode(), out, 1024)
                    self.assertEqual(found, 1)
                    self.expect(0, 'find', path, code, '--column', '1',
                                out=[out.value.decode('cp1252')])
