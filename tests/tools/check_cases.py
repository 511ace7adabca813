# SPDX-License-Identifier: MIT
"""What `check` finds: one row, one hostile table."""
from workbench import Workbench, real_tables, table_bytes

GOOD = table_bytes('01,Consultation,23', '02,Visite,30')

# Of CP1252 each; several of them, or parts, are UTF-8 as well.
FRENCH = ['CAFÉ” à ÀNBSPx été', '« NBSPsantéNBSP»', '«NBSPdéjàNBSP»', 'l’«NBSPétéNBSP»', 'làNBSP»',
          'qualitéNBSP– prix', 'QUALITÉNBSP– PRIX', 'été…»', 'né…»', 'SANTÉ…', 'CAFÉ’', 'DOLIPRÉ®',
          'trouvéNBSP° ou «NBSPNOËLNBSP»', 'Noël', 'É', '«NBSPÀNBSP»', 'allô…NBSP»']
FRENCH = [text.replace('NBSP', '\xA0') for text in FRENCH]


class Check(Workbench):
    def findings(self, content, *options, code=1):
        self.table.write_bytes(content)
        return self.expect(code, 'check', 'actes.tab', *options).lines

    def test_a_good_table_is_clean_and_silent(self):
        self.assertEqual(self.findings(GOOD, code=0), [])
        self.assertEqual(self.findings(table_bytes(), code=0), [])

    def test_each_finding_has_its_line(self):
        long_line = '03,Acte,' + 'x' * 1020
        rows = [
            # UTF-8 in a CP1252 file.
            (GOOD.replace(b'Visite', 'Visité'.encode()),
             ['5: UTF-8: "é" will be read as "Ã©"']),
            (GOOD.replace(b'Visite', 'l’œil'.encode()),
             ['5: UTF-8: "’" will be read as "â€™"']),
            (b'\xEF\xBB\xBF' + GOOD, ['1: UTF-8: the file begins with a byte order mark']),
            (GOOD.replace(b'Visite', b'Vis\x81te'), ['5: the byte 81 is no character of CP1252']),
            (GOOD.replace(b'Visite', b'\xEF\xBB\xBFVisite'),
             ['5: UTF-8: "\uFEFF" will be read as "ï»¿"']),
            (GOOD.replace(b'Actes', b'\xEF\xBB\xBFVisit\xC3\xA9'),
             ['1: UTF-8: the file begins with a byte order mark',
              '1: UTF-8: "é" will be read as "Ã©"']),
            # Letters that CP1252 does not have; accents behind their letters; a sign.
            (GOOD.replace(b'Visite', 'Wałęsa'.encode()), ['5: UTF-8: "ł" will be read as "Å‚"']),
            (GOOD.replace(b'Visite', 'me\u0300re'.encode()),
             ['5: UTF-8: "\u0300" will be read as "Ì€"']),
            (GOOD.replace(b'Visite', 'e\u0301te\u0301'.encode()),
             ['5: UTF-8: "\u0301" will be read as "Ì\x81"']),
            (GOOD.replace(b'Visite', '≥ 3'.encode()), ['5: UTF-8: "≥" will be read as "â‰¥"']),
            # What only looks like it.
            *[(GOOD.replace(b'Visite', text.encode('cp1252')), []) for text in FRENCH],
            # Line ends.
            (GOOD.replace(b'23\r\n', b'23\n'),
             ['4: a line feed without a carriage return in front']),
            (GOOD.replace(b'23\r\n', b'23\r'),
             ['4: the line ends with a carriage return alone']),
            (GOOD[:-2], ['6: the last line has no line end']),
            (GOOD + b'\n\n', ['6: 2 line feeds without a carriage return in front']),
            (b'A\nB\n', ['1: heading: no line "Version: " behind the title',
                         '1: the mark "#DEBUT" is missing',
                         '1: 2 line feeds without a carriage return in front',
                         '1: the mark "#FIN" is missing']),
            # A NUL, and more than is read.
            (GOOD.replace(b'23', b'\0'), ['4: a NUL: what follows it in the line is not read']),
            (table_bytes('01,Consultation,23', long_line),
             ['5: 1028 characters, of which 1022 are read']),
            # The heading.
            (GOOD[7:], ['1: heading: the title is missing']),
            (GOOD[19:], ['1: heading: the title is missing',
                         '1: heading: no line "Version: " behind the title']),
            (GOOD.replace(b'Version: 2\r\n', b''),
             ['2: heading: no line "Version: " behind the title']),
            (GOOD.replace(b'Version', b'version'),
             ['2: heading: no line "Version: " behind the title']),
            (GOOD.replace(b'Actes', b''), ['1: heading: the title is empty']),
            (GOOD.replace(b'#DEBUT', b'\r\n#DEBUT'), ['4: heading: "#DEBUT" belongs in line 3']),
            # Marks.
            (GOOD.replace(b'#DEBUT\r\n', b''),
             ['3: the mark "#DEBUT" is missing', '5: "#FIN" in front of "#DEBUT"']),
            (GOOD.replace(b'#FIN\r\n', b''), ['5: the mark "#FIN" is missing']),
            (GOOD.replace(b'#FIN\r\n', b'').replace(b'#D', b'#FIN\r\n#D'),
             ['3: "#FIN" in front of "#DEBUT"', '4: heading: "#DEBUT" belongs in line 3',
              '6: the mark "#FIN" is missing']),
            (GOOD + b'#DEBUT\r\n03,Acte,1\r\n', ['7: "#DEBUT" stands in line 3 already',
                                               '8: the mark "#FIN" is missing']),
            (GOOD.replace(b'02', b'#DEBUT\r\n02'),
             ['5: "#DEBUT" stands in line 3 already']),
            (GOOD + b'#FIN\r\n', ['7: "#FIN" stands in line 6 already']),
            (GOOD + b'03,Acte,1\r\n', ['7: a line behind "#FIN" is no data line']),
            (GOOD.replace(b'02,Visite', b'????,Visite'),
             ['5: the code "????" counts as the mark "#FIN"',
              '6: "#FIN" stands in line 5 already']),
            (GOOD.replace(b'#FIN', b'#FIN,x'), ['6: the mark "#FIN" has further fields']),
            # Fields.
            (table_bytes('01,A,1', '02,B,1', '03,C'), ['6: 2 fields, where most lines have 3']),
            (table_bytes('01,A', '01,B', '01+A', '01,A '),
             ['6: repeats line 4', '7: column 1 ends with a blank: "A "']),
            (table_bytes('0?,A', '1*,B', ',C'),
             ['4: the code "0?": its "?" equals any character',
              '5: the code "1*": at its end a "*" equals whatever follows',
              '6: the code is empty']),
            (table_bytes('01,A', '', '02,B'), ['5: an empty line, which has no code']),
            (table_bytes('01 ,A\t', '02,B\xA0'),
             ['4: the code ends with a blank: "01 "',
              '4: column 1 ends with a blank: "A\\x09"',
              '5: column 1 ends with a blank: "B\xA0"']),
            (GOOD.replace(b'Actes', b'Actes '), ['1: the line ends with a blank']),
            (b'', ['1: the file is empty: no heading, no marks']),
        ]
        for content, findings in rows:
            with self.subTest(content=content[:80]):
                self.assertEqual(self.findings(content, code=1 if findings else 0),
                                 [f'actes.tab:{finding}' for finding in findings])

    def test_lines_ended_by_carriage_returns_alone_are_lines(self):
        found = self.findings(GOOD.replace(b'\n', b''))
        self.assertEqual(found, [f'actes.tab:{line}: the line ends with a carriage return alone'
                                 for line in range(1, 7)])

    def test_periods_are_checked_where_their_column_is_said(self):
        rows = [
            # The last day of a period may be the first of the next, or the day before it.
            (['01/01/95,31/12/99', '31/12/99,15/03/04', '16/03/04,'], []),
            (['16/03/04,', '01/01/95,15/03/04'], []),
            ([',31/12/99', '01/01/00,'], []),
            (['01/01/95,32/12/99'], ['4: column 3 is no date DD/MM/YY: "32/12/99"']),
            (['29/02/95,x'], ['4: column 2 is no date DD/MM/YY: "29/02/95"',
                              '4: column 3 is no date DD/MM/YY: "x"']),
            (['01/01/1995,'], ['4: column 2 is no date DD/MM/YY: "01/01/1995"']),
            (['01/01/95,31/12/94'],
             ['4: the period is reversed: it begins on 01/01/95 and ends on 31/12/94']),
            (['01/01/95,31/12/99', '30/12/99,'], ['5: the period overlaps that of line 4']),
            (['01/01/95,', '01/01/00,'], ['5: the period overlaps that of line 4']),
            (['01/01/95,31/12/99', '01/03/95,02/03/95', '01/01/00,'],
             ['5: the period overlaps that of line 4']),
            (['01/01/95,31/12/99', '02/01/00,'],
             ['5: a gap before the period: it begins on 02/01/00, that of line 4 ends on 31/12/99']),
        ]
        for periods, findings in rows:
            with self.subTest(periods=periods):
                # A line of another code is none of their business.
                content = table_bytes(*[f'01,A,{period}' for period in periods], '02,A,01/01/60,')
                self.assertEqual(self.findings(content, '--dates', '2', code=1 if findings else 0),
                                 [f'actes.tab:{finding}' for finding in findings])
                self.assertEqual(self.findings(content, code=0), [])

    def test_a_column_that_most_lines_do_not_have_is_no_column_of_dates(self):
        self.table.write_bytes(GOOD)
        self.expect_refused('check', 'actes.tab', '--dates', '3', err='--dates 3: most lines have no')
        # What else there is is still found.
        self.table.write_bytes(GOOD[:-2])
        found = self.expect(2, 'check', 'actes.tab', '--dates', '3', err='--dates 3: most').lines
        self.assertEqual(found, ['actes.tab:6: the last line has no line end'])

    def test_a_table_that_cannot_be_read_does_not_hide_the_others(self):
        self.table.write_bytes(GOOD[:-2])
        result = self.run_tool('check', 'missing.tab', 'actes.tab', '.')
        self.assertEqual((result.code, len(result.lines)), (2, 1))
        self.assertEqual(result.err, 'korvel-tables: missing.tab: No such file or directory\n'
                                     'korvel-tables: .: Is a directory\n')

    def test_the_real_tables_are_clean_but_for_gaps_in_their_history(self):
        self.expect(0, 'check', *real_tables(), out=[])
        for name, column, gaps in ('timbres', 4, 0), ('communes_histo', 2, 262):
            path = next(path for path in real_tables() if path.stem == name)
            found = self.expect(1 if gaps else 0, 'check', path, '--dates', str(column)).lines
            self.assertEqual(len(found), gaps)
            self.assertTrue(all(': a gap before the period: ' in line for line in found))
        self.assertIn(f'{path}:658: a gap before the period: it begins on 01/01/78, '
                      'that of line 657 ends on 01/10/74', found)
