# SPDX-License-Identifier: MIT
"""read_with_configparser.py <file>: prints what Python's configparser reads from a profile, one
line per key: section, key and value, as hexadecimal bytes of CP1252."""
import configparser
import sys

parser = configparser.RawConfigParser(strict=True, delimiters=['='], default_section=None)
parser.optionxform = str
with open(sys.argv[1], encoding='cp1252') as profile:
    parser.read_file(profile)
for section in parser.sections():
    for key, value in parser.items(section):
        print(*(text.encode('cp1252').hex() or '-' for text in (section, key, value)))
