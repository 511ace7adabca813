# SPDX-License-Identifier: MIT
"""lines_change_nothing.py <nm> <library> <include folder> <scratch folder> [<seed>]: what random
calls return, and leave in their buffers, in errno, in the globals and in files, is the same without
KORVEL_DEBUG and with it. Texts, runs and buffers end where memory that may be touched ends. Left
out is what starts commands, asks the clock or keeps an address; no dialog comes up and nothing is
drawn."""
import ctypes
import mmap
import os
import pathlib
import random
import re
import shutil
import struct
import subprocess
import sys
import zlib

CALLS = 6000
NOT_CALLED = re.compile(r'BSD|Global(Alloc|ReAlloc|Free|Lock|Unlock)|szcopyex$|'
                        r'Korvel(Painter|Widget)|'
                        r'ZRV_Get_Date|listeNoms|MessageBoxFilter|DlgBoxGlobal_BAS|DlgBoxFunc|'
                        r'Dir_(Find|Process)Files|TexteDlgBox_set_liste_buffer')
OFTEN = re.compile(r'ZRV_(Table|Libelle|Code)|File_|MFil|Profile|setDir|chinsch|tabstops')
TEXTS = [b'', b'abc', b'a', b'AA', b'/srv/x', b'\xC3\xA9t\xC3\xA9', b'\xE9t\xE9', b'1+2,3',
         b'07/03/2004', b'12', b'20040307', b'-5', b'A', b'x', b'x' * 300]
# A path on a volume that is not there would lead anywhere.
TEXTS_OF = {
    re.compile('(name|newName|table)$'): [b'', b'a', b'a', b'b', b'pipe', b'none'],
    re.compile('.*(path|mac|dir|folder)', re.I): [b'Data', b'Data:a.txt', b'Data:p.ini',
                                                  b'Data:none:x', b'Data:tables']}
LENGTHS = [-2, -1, 0, 0, 1, 2, 3, 5, 8, 20, 21, 60]
NUMBERS = [-2**31, -1, 0, 0, 1, 1, 2, 3, 4, 5, 19, 20, 127, 128, 1000, 2**31 - 1]
NUMBERS_OF = {'descriptor': [-1, 900], 'handle': [-1, 0, 1, 2, 3, 4, 5], 'wish': [0, 5000],
              'date': [0, 20040307, 20041301, -5], 'read': [0, 1, -1], 'write': [0, 0, 1],
              'length': [-1, 0, 3, 100], 'offset': [-1, 0, 3, 50], 'fields': [-1, 0, 2, 200],
              'rows': [-1, 0, 1, 20]}
IS_LENGTH = re.compile(r'(capacity|size|outSize|width|n|l[abps]|len|listLength|keyLength|count)$')


class Colour(ctypes.Structure):
    _fields_ = [('rgb', ctypes.c_ushort * 3)]


def page_end(content):
    """The address of these bytes, right before a page that may not be touched."""
    size = -(-max(len(content), 1) // mmap.PAGESIZE) * mmap.PAGESIZE
    area = mmap.mmap(-1, size + mmap.PAGESIZE)
    start = ctypes.addressof(ctypes.c_char.from_buffer(area))
    if LIBC.mprotect(ctypes.c_void_p(start + size), mmap.PAGESIZE, 0) != 0:
        sys.exit('no page for the test')
    place = start + size - len(content)
    ctypes.memmove(place, content, len(content))
    return place, len(content), area


class Calls:
    """Random calls of the functions that the headers declare."""

    def __init__(self, library, include, globals_of):
        self.library = ctypes.CDLL(library, use_errno=True)
        self.globals = [(name, ctypes.addressof(ctypes.c_char.in_dll(self.library, name)), size)
                        for name, size in globals_of]
        self.stub = ctypes.CFUNCTYPE(ctypes.c_int)(lambda: 0)
        self.functions = []
        for header in sorted(pathlib.Path(include).glob('korvel/*.h')):
            bare = re.sub(r'/\*.*?\*/', '', header.read_text(encoding='utf-8'), flags=re.S)
            for found in re.finditer(r'^KORVEL_API ((?:\w+ )+\*?)(\w+)\(([^()]*)\);', bare, re.M):
                if not NOT_CALLED.match(found[2]):
                    self.functions.append((found[1].strip(), found[2], [
                        re.match(r'(.*?)\s*(\w+)$', ' '.join(parameter.split())).groups()
                        for parameter in found[3].split(',') if parameter.strip() != 'void']))
        self.often = [function for function in self.functions if OFTEN.search(function[1])]

    def argument(self, kind, name, length, end):
        """A value of a parameter, and the memory that it leads to. length: that the next parameter
        gives, or none; end: of a text."""
        if kind == 'double':
            return ctypes.c_double(random.choice([0, 1.5, -2.25, 1e300])), None
        if kind == 'RGBColor':
            return Colour((1, 2, 3)), None
        if '*' not in kind and kind not in ('int', 'unsigned', 'unsigned int'):
            return random.choice([None, self.stub]) if kind.endswith('_t') else None, None
        if '*' not in kind:
            return ctypes.c_int(random.choice(NUMBERS_OF.get(name, NUMBERS))), None
        if random.random() < .1 and kind != 'const char *const *':
            return None, None
        texts = [texts for names, texts in TEXTS_OF.items() if names.match(name)] + [TEXTS]
        text = random.choice(texts[0])
        if length is not None:
            content = (text + bytes(100))[:max(length, 0)]
            content = content[:-1] + b'\0' if content and 'const' not in kind else content
        elif name == 'stops':
            content = b'\1' * 4 * 127
        elif name == 'columns':
            content = b'\1\0\0\0\xFF\xFF\xFF\xFF'
        elif kind == 'const char *const *':
            content = bytes(16)
        else:
            content = text + (end if 'const char' in kind else bytes(70000))
        memory = page_end(content)
        return ctypes.c_void_p(memory[0]), memory

    def call(self):
        result, name, parameters = random.choice(random.choice([self.functions, self.often]))
        values, memories, length = [], [], None
        end = b'\0\0' if name.startswith('ChCh') else b'\0'
        for i, (kind, parameter) in enumerate(parameters):
            if length is not None:
                values, length = values + [ctypes.c_int(length)], None
                continue
            behind = parameters[i + 1] if i + 1 < len(parameters) else ('', '')
            if '*' in kind and behind[0] == 'int' and IS_LENGTH.match(behind[1]) and \
                    (kind, parameter) != ('char *', 's'):
                length = random.choice(LENGTHS)
            value, memory = self.argument(kind, parameter, length, end)
            values, memories = values + [value], memories + [memory]
        function = self.library[name]
        function.restype = {'void': None, 'int': ctypes.c_int}.get(result, ctypes.c_void_p)
        ctypes.set_errno(77)
        returned = function(*values)
        yield name, ctypes.get_errno(), returned if result == 'int' else returned is not None
        for memory in filter(None, memories):
            yield zlib.crc32(ctypes.string_at(memory[0], memory[1]))

    def changed(self, before):
        """The globals that are not as before."""
        for name, address, size in self.globals:
            content = ctypes.string_at(address, size)
            if name == 'DATA_MFIL_TAB':  # where memory lies is no matter
                content = repr([min(word, 1 << 44) for word, in struct.iter_unpack('q', content)])
                content = content.encode()
            now = zlib.crc32(content)
            if before.get(name) != now:
                before[name] = now
                yield name, now

    def run(self, seed, home, trace):
        random.seed(seed)
        before = {}
        list(self.changed(before))
        for i in range(CALLS):
            if i % 10 == 0:
                for handle in range(5):
                    self.library.File_Close(handle)
                ctypes.c_int.in_dll(self.library, 'DATA_FILE_ID').value = -1
                for name, text in (('szVolumes', os.fsencode(home)),
                                   ('szDirTables', b'Data:tables'),
                                   ('ZRV_Libelle_NC_szDirTables', b'')):
                    (ctypes.c_char * 256).in_dll(self.library, name).value = text
            trace.write(f'{i} {list(self.call())} {list(self.changed(before))}\n')
            trace.flush()


def prepare(home):
    shutil.rmtree(home, ignore_errors=True)
    (home / 'Data/tables').mkdir(parents=True)
    (home / 'Data/a.txt').write_bytes(b'abc')
    (home / 'Data/p.ini').write_bytes(b'[A]\r\nx=12\r\na=abcd\r\n')
    (home / 'Data/tables/a.tab').write_bytes(
        b'T\r\nVersion: 1\r\n#DEBUT\r\nAA,un,deux\r\nAA,un,x\r\nBB,b\r\n#FIN\r\n')
    os.mkfifo(home / 'Data/tables/pipe.tab')


def files(home):
    return {str(path): path.read_bytes() for path in sorted(home.rglob('*')) if path.is_file()}


def played(calls, seed, scratch, debug):
    """What happens in a process of its own: how it ends, its calls, its files and its lines."""
    home = scratch / 'volumes'
    prepare(home)
    errors, trace = scratch / 'errors', scratch / 'trace'
    child = os.fork()
    if child == 0:
        os.environ.update({'KORVEL_DEBUG': debug, 'KORVEL_DESKTOP': '/dev/null'})
        os.dup2(os.open(errors, os.O_WRONLY | os.O_CREAT | os.O_TRUNC), 2)
        os.closerange(3, 100)
        with open(trace, 'w', encoding='utf-8') as out:
            calls.run(seed, home, out)
        os._exit(0)
    end = os.waitpid(child, 0)[1]
    return (end, trace.read_text(encoding='utf-8').splitlines(), files(home),
            errors.read_bytes().count(b'korvel: '))


LIBC = ctypes.CDLL(None)


def main():
    nm, library, include, folder, seed = (sys.argv + ['1'])[1:6]
    scratch = pathlib.Path(folder)
    scratch.mkdir(parents=True, exist_ok=True)
    listing = subprocess.run([nm, '-D', '-S', library], capture_output=True, text=True, check=True)
    symbols = [line.split() for line in listing.stdout.splitlines()]
    calls = Calls(library, include, [(symbol[3], int(symbol[1], 16)) for symbol in symbols
                                     if len(symbol) == 4 and symbol[2] in 'BDV'])
    end, trace, left, _ = played(calls, seed, scratch, '0')
    if end != 0 or len(trace) != CALLS or len(calls.functions) < 230:
        sys.exit(f'{len(trace)} of {CALLS} calls of {len(calls.functions)} functions: {end}')
    told_end, told_trace, told_left, lines = played(calls, seed, scratch, '1')
    for plain, told in zip(trace, told_trace):
        if plain != told:
            sys.exit(f'without KORVEL_DEBUG: {plain}\nwith it:              {told}')
    if told_end != end or len(told_trace) != len(trace):
        sys.exit(f'with KORVEL_DEBUG, call {len(told_trace)} ends the process: {told_end}')
    if told_left != left:
        sys.exit('with KORVEL_DEBUG the files are others')
    if lines < CALLS // 4:
        sys.exit(f'only {lines} lines are told of {CALLS} calls')
    print(f'{CALLS} calls of {len(calls.functions)} functions, with lines and without: the same')


main()
