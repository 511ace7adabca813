# SPDX-License-Identifier: MIT
"""How the program is called and what it says of itself, and what becomes of tables when it is
killed, the disk is full or a file may not be read."""
import contextlib
import fcntl
import os
import pathlib
import pty
import random
import re
import resource
import select
import signal
import subprocess
import time

import workbench
from workbench import Workbench, real_tables, table_bytes

COMMANDS = ['check', 'show', 'list', 'find', 'search', 'set', 'insert', 'delete', 'backup', 'repair',
            'diff', 'import', 'export']


def options_in(text):
    return set(re.findall(r'--[a-z][a-z-]*', text))


class Help(Workbench):
    def test_help_names_every_command(self):
        text = self.expect(0, '--help').out
        self.assertEqual(re.findall(r'^  ([a-z]+) ', text, re.M), COMMANDS)
        self.assertLessEqual(max(map(len, text.splitlines())), 100)

    def test_each_command_has_a_help(self):
        for command in COMMANDS:
            text = self.expect(0, command, '--help').out
            self.assertTrue(text.startswith(f'usage: korvel-tables {command} '), text)
            self.assertLessEqual(max(map(len, text.splitlines())), 100)

    def test_the_version_is_the_projects(self):
        header = (workbench.project / 'include/korvel/version.h').read_text()
        version = '.'.join(re.findall(r'define KORVEL_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)', header))
        self.expect(0, '--version', out=[f'korvel-tables {version}'])

    def test_wrong_use_is_2_with_one_line(self):
        for arguments, err in (([], 'which command?'), (['nix'], 'no command "nix"'),
                               (['help'], 'no command "help" (see korvel-tables --help)'),
                               (['check'], 'takes TABLE...'), (['list', 'a', 'b'], 'not "b"'),
                               (['list', 'a', '--all'], 'unknown option --all'),
                               (['find', 'a', '-1'], 'unknown option -1'),
                               (['find', 'a', '1', '--column'], '--column needs a value'),
                               (['find', 'a', '1', '--column', '-1'], 'number from 0 on'),
                               (['find', 'a', '1', '--date', '20200101'], 'go together'),
                               (['find', 'a', '1', '--dates', '2'], 'go together'),
                               (['find', 'a', '1', '--date', '20200230', '--dates', '1'], 'a day'),
                               (['check', 'a', '--dates', '0'], 'number from 1 on')):
            with self.subTest(arguments=arguments):
                self.expect_refused(*arguments, err=err)

    def test_arguments_and_paths_make_no_second_line_and_no_bytes_that_are_no_utf_8(self):
        self.put('01,A')
        (self.folder / 'a\nb').mkdir()
        for arguments, err in ((['a\nb'], 'no command "a\\x0Ab"'),
                               (['list', 'x', 'a\x1B[2Jé'], 'not "a\\x1B[2Jé" as well'),
                               (['list', '--a\nb'], 'unknown option --a\\x0Ab'),
                               (['list', b'-\xC3\xA9'], 'unknown option -\\xC3 '),
                               (['set', 'actes.tab', '01', 'a\rb', 'x'], 'not "a\\x0Db"'),
                               (['set', 'actes.tab', '01', '1', 'a,b\nc'], '"a,b\\x0Ac": a ","'),
                               (['set', 'actes.tab', '01', '1', 'Ω\x85'], '\\xC2\\x85"'),
                               (['set', 'actes.tab', '01', '1', b'\xE9,x'], '"\\xE9,x": a ","'),
                               (['show', 'no\nfile'], 'no\\x0Afile: No such'),
                               (['show', 'a\nb'], 'a\\x0Ab: Is a directory'),
                               (['show', b'\xE9.tab'], '\\xE9.tab: No such'),
                               (['export', 'actes.tab', '--format', 'a\nb'], 'not "a\\x0Ab"')):
            with self.subTest(arguments=arguments):
                self.expect_refused(*arguments, err=err)
        self.expect(1, 'find', 'actes.tab', 'a\nb', err='code "a\\x0Ab" not found\n')
        self.expect(1, 'delete', 'actes.tab', 'aé\n', err='"aé\\x0A" not found\n')

    def test_manual_and_completion_know_every_option(self):
        tools = workbench.project / 'tools'
        manual = (tools / 'korvel-tables.1').read_text().replace('\\-', '-').replace('\\fR', '')
        completion = tools / 'korvel-tables.bash'
        for command in COMMANDS:
            with self.subTest(command=command):
                options = options_in(self.expect(0, command, '--help').out)
                synopsis = re.search(rf'^\\fBkorvel-tables {command} ?(.*\n(?:    .*\n)*)', manual,
                                     re.M)[1]
                self.assertEqual(options_in(synopsis), options)
                self.assertEqual(self.completed(completion, [command, 'x', '--']),
                                 options | {'--help'})

    def completed(self, completion, words):
        script = 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); ' \
                 '"$(complete -p korvel-tables | sed "s/.*-F //; s/ .*//")"; ' \
                 'printf "%s\\n" "${COMPREPLY[@]}"'
        run = subprocess.run(['bash', '-c', script, 'bash', completion, 'korvel-tables', *words],
                             capture_output=True, text=True, check=True, cwd=self.folder)
        self.assertEqual(run.stderr, '')
        return set(run.stdout.split())

    def test_completion(self):
        self.put('01,A')
        completion = workbench.project / 'tools/korvel-tables.bash'
        for words, expected in ((['l'], {'list'}), ([''], {*COMMANDS, '--help', '--version'}),
                                (['export', 'x', '--format', ''], {'csv', 'sqlite', 'postgres'}),
                                (['import', '--encoding', 'u'], {'utf-8'}),
                                (['find', 'x', '--column', ''], set())):
            with self.subTest(words=words):
                self.assertEqual(self.completed(completion, words), expected)

    def test_files_are_completed_as_the_shell_does(self):
        for name in 'a b.tab', "l'été.tab", 'x.tab':
            (self.folder / name).write_bytes(table_bytes('01,A'))
        (self.folder / 'd e').mkdir()
        (self.folder / 'd e' / 'y.tab').write_bytes(table_bytes('01,A'))
        completion = workbench.project / 'tools/korvel-tables.bash'
        ours, theirs = pty.openpty()
        shell = subprocess.Popen(['bash', '--norc', '--noprofile', '-i'], cwd=self.folder, stdin=theirs,
                                 stdout=theirs, stderr=theirs, start_new_session=True,
                                 env={**os.environ, 'TERM': 'dumb', 'LC_ALL': 'C.UTF-8', 'PS1': '',
                                      'INPUTRC': '/dev/null', 'HISTFILE': ''})
        os.close(theirs)
        lines = [f"source '{completion}'", 'korvel-tables() { printf "<%s>" "$@"; echo; }']
        lines += ['korvel-tables ' + typed + '\t' for typed in (
            'check x', 'check a\\ ', 'check "a', "check 'a", 'check l', 'check d\ty', 'set x',
            'export x.tab --output a\\ b', 'import x', 'find x.tab 01 --column x')]
        os.write(ours, '\n'.join([*lines, 'exit', '']).encode())
        seen = all_that_comes(ours)
        self.assertEqual(shell.wait(), 0)
        self.assertEqual(re.findall('^<.*>', seen, re.M), [
            '<check><x.tab>', '<check><a b.tab>', '<check><a b.tab>', '<check><a b.tab>',
            "<check><l'été.tab>", '<check><d e/y.tab>', '<set><x.tab>',
            '<export><x.tab><--output><a b.tab>', '<import><x.tab>',
            '<find><x.tab><01><--column><x>'])


class Trouble(Workbench):
    debug = '0'

    def test_a_folder_is_no_table(self):
        for arguments in (['show', '.'], ['list', '.'], ['find', '.', '1'], ['search', '.', '1'],
                          ['set', '.', '1', '1', 'x'], ['insert', '.', '1'], ['delete', '.', '1'],
                          ['backup', '.'], ['repair', '.', '--title', 'T', '--version', 'V'],
                          ['diff', '.', '.'], ['export', '.'],
                          ['import', '.', 'x.tab', '--title', 'T', '--version', 'V']):
            with self.subTest(arguments=arguments):
                self.expect_refused(*arguments, err='.: Is a directory')

    def test_a_table_that_another_program_keeps_locked_is_told(self):
        self.put('01,A')
        with open(self.table, 'rb') as held:
            fcntl.flock(held, fcntl.LOCK_EX)
            self.expect_refused('set', 'actes.tab', '01', '1', 'B', err='is another program editing')

    def test_any_bytes_are_looked_at_without_harm(self):
        chosen = random.Random(11)
        pieces = [b'#DEBUT', b'#FIN', b'\r\n', b'\r\n', b'\r', b'\n', b',', b'+', b'01', b'?', b'\0',
                  b'\xE9', b'\xC3\xA9', b'\xEF\xBB\xBF', b'"', b'Version: ', b'31/12/99,', b'x' * 500]
        for _ in range(12):
            content = b''.join(chosen.choices(pieces, k=chosen.randrange(60)))
            self.table.write_bytes(content)
            for arguments in (['check', 'actes.tab', '--dates', '1'], ['show', 'actes.tab'],
                              ['find', 'actes.tab', '??', '--all', '--date', '20000101', '--dates', '2'],
                              ['search', 'actes.tab', 'é', '--ignore-case'],
                              ['diff', 'actes.tab', 'actes.tab'], ['export', 'actes.tab'],
                              ['import', 'actes.tab', 'x.tab', '--title', 'T', '--version', 'V']):
                with self.subTest(arguments=arguments, content=content):
                    result = self.run_tool(*arguments)
                    self.assertIn(result.code, (0, 1, 2), result.err)
                    self.assertLessEqual(result.err.count('\n'), 1, result.err)
            self.assertEqual(self.table.read_bytes(), content)

    def test_a_full_standard_output_is_told(self):
        self.put(*[f'{i:05},{"x" * 100}' for i in range(100)])
        for arguments in ['show'], ['list'], ['export']:
            with open('/dev/full', 'wb') as full:
                run = subprocess.run([workbench.program, *arguments, self.table], stdout=full,
                                     stderr=subprocess.PIPE, check=False, text=True)
            self.assertEqual(run.returncode, 2)
            self.assertEqual(run.stderr,
                             'korvel-tables: standard output: No space left on device\n')

    def test_a_disk_that_takes_no_more_leaves_every_file_as_it_was(self):
        self.put(*[f'{i:05},{"x" * 100}' for i in range(100)])
        (self.folder / 'list.csv').write_bytes(b'01,' + b'x' * 1000 + b'\r\n' * 20)

        def room_for_1000_bytes():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))

        before = self.files()
        for arguments in (['set', 'actes.tab', '00001', '1', 'y'], ['insert', 'actes.tab', 'y'],
                          ['delete', 'actes.tab', '00001'], ['delete', 'actes.tab', '00001', '--all'],
                          ['backup', 'actes.tab'],
                          ['repair', 'actes.tab', '--title', 'T', '--version', 'V'],
                          ['import', 'list.csv', 'actes.tab', '--title', 'T', '--version', 'V'],
                          ['import', 'list.csv', 'new.tab', '--title', 'T', '--version', 'V'],
                          ['export', 'actes.tab', '--output', 'out.csv'],
                          ['export', 'actes.tab', '--format', 'sqlite', '--output', 'out.db']):
            with self.subTest(arguments=arguments):
                result = self.run_tool(*arguments, preexec_fn=room_for_1000_bytes)
                self.assertEqual((result.code, result.out), (2, ''), result.err)
                self.assertRegex(result.err, r'^korvel-tables: [^\n]+\n$')
                self.assertEqual(self.files(), before)

    def test_where_a_line_finds_no_room_behind_the_last_one_nothing_stands_there(self):
        self.table.write_bytes(table_bytes('01,A')[:-6])
        before = self.files()
        room = len(before['actes.tab']) + 7  # for a line "Néant"

        def limit_room():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (room, room))

        result = self.run_tool('insert', 'actes.tab', '02', 'Visite', preexec_fn=limit_room)
        self.assertEqual((result.code, self.files()), (2, before))


class Killed(Workbench):
    def test_a_killed_import_leaves_the_old_table_or_the_new_one(self):
        old = table_bytes('01,A')
        real = next(path for path in real_tables() if path.stem == 'substances')
        new = real.read_bytes()
        self.expect(0, 'export', real, '--output', 'list.csv')
        title, version = new.decode('cp1252').split('\r\n')[:2]
        command = [workbench.program, 'import', 'list.csv', 'actes.tab', '--title', title,
                   '--version', version.removeprefix('Version: ')]
        begin = time.monotonic()
        subprocess.run(command, cwd=self.folder, check=True)
        whole = time.monotonic() - begin
        for attempt in range(12):
            if attempt % 2:
                self.table.write_bytes(old)
            else:
                self.table.unlink(missing_ok=True)
            process = subprocess.Popen(command, cwd=self.folder)
            time.sleep(whole * (attempt // 4) / 3)
            process.send_signal(signal.SIGTERM if attempt % 4 < 2 else signal.SIGKILL)
            process.wait()
            content = self.table.read_bytes() if self.table.exists() else None
            self.assertIn(content, (old if attempt % 2 else None, new))
            left_over = set(self.files()) - {'actes.tab', 'list.csv'}
            for name in left_over:
                (self.folder / name).unlink()

    def test_an_import_that_is_ended_leaves_the_old_table_and_no_file_unless_killed(self):
        self.put('01,A')
        (self.folder / 'list.csv').write_bytes(b'02,B\r\n')
        before = self.files()
        for number in signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGKILL:
            with open(self.table, 'rb') as held:
                # It waits for an edit of the old table.
                fcntl.flock(held, fcntl.LOCK_EX)
                process = subprocess.Popen([workbench.program, 'import', 'list.csv', 'actes.tab',
                                            '--title', 'T', '--version', 'V'], cwd=self.folder)
                while len(self.files()) == len(before) and process.poll() is None:
                    time.sleep(0.001)
                process.send_signal(number)
                self.assertEqual(process.wait(), -number)
            after = self.files()
            self.assertEqual({name: after.pop(name, None) for name in before}, before)
            # Nobody can ask more of a kill.
            self.assertEqual(len(after), 1 if number == signal.SIGKILL else 0)


    def test_an_import_that_no_hang_up_shall_end_goes_on(self):
        self.put('01,A')
        (self.folder / 'list.csv').write_bytes(b'02,B\r\n')
        with open(self.table, 'rb') as held:
            fcntl.flock(held, fcntl.LOCK_EX)
            process = subprocess.Popen(
                [workbench.program, 'import', 'list.csv', 'actes.tab', '--title', 'Actes', '--version',
                 '2'], cwd=self.folder,
                preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
            while len(self.files()) == 2 and process.poll() is None:
                time.sleep(0.001)
            process.send_signal(signal.SIGHUP)
        self.assertEqual(process.wait(), 0)
        self.assertEqual(self.table.read_bytes(), table_bytes('02,B'))


class SlowRun:
    """The program in a folder of its own, where what it waits for comes late: the other end of the
    pipe that it reads, or the lock of the folder in which it edits."""

    def __init__(self, folder, arguments, table, stderr, stdout=subprocess.DEVNULL):
        self.folder = folder
        self.content = b'01,A\r\n' if arguments[0] == 'import' else table
        folder.mkdir()
        (folder / 'actes.tab').write_bytes(table)
        os.mkfifo(folder / 'pipe')
        self.held = os.open(folder, os.O_RDONLY)
        fcntl.flock(self.held, fcntl.LOCK_EX)
        self.process = subprocess.Popen([workbench.program, *arguments], cwd=folder, stderr=stderr,
                                        stdout=stdout)
        self.pipe = None
        wait = self.has_opened_pipe if 'pipe' in arguments else self.has_opened_folder
        while not wait():
            assert self.process.poll() is None, f'{arguments}: it waits for nothing'
            time.sleep(0.001)

    def has_opened_pipe(self):
        try:
            self.pipe = os.open(self.folder / 'pipe', os.O_WRONLY | os.O_NONBLOCK)
        except OSError:
            return False
        return True

    def has_opened_folder(self):
        wanted = os.path.realpath(self.folder)
        for file in pathlib.Path(f'/proc/{self.process.pid}/fd').iterdir():
            with contextlib.suppress(FileNotFoundError):
                if os.readlink(file) == wanted:
                    return True
        return False

    def go_on(self):
        if self.pipe is not None:
            os.write(self.pipe, self.content)
            os.close(self.pipe)
        os.close(self.held)


def all_that_comes(descriptor):
    content = b''
    with contextlib.suppress(OSError):  # how a terminal ends
        while piece := os.read(descriptor, 4096):
            content += piece
    os.close(descriptor)
    return content.decode()


class Bar(Workbench):
    RUNS = [['check', 'pipe', '--dates', '1'], ['show', 'pipe'], ['list', 'pipe'],
            ['find', 'pipe', '02', '--all'], ['search', 'pipe', 'B'],
            ['set', 'actes.tab', '02', '1', 'C'], ['insert', 'actes.tab', '03'],
            ['delete', 'actes.tab', '01', '--all'], ['backup', 'actes.tab'],
            ['repair', 'actes.tab', '--title', 'T', '--version', 'V'],
            ['diff', 'pipe', 'actes.tab'],
            ['import', 'pipe', 'new.tab', '--title', 'T', '--version', 'V'], ['export', 'pipe']]
    TABLE = table_bytes(*['01,A'] * 20, '02,B')
    SHOWN = r'(?:(?:\r\[#*\.*\] +\d+ %)+\r\x1b\[K)'

    def seen(self, open_ends):
        """What standard error gets of each command, which takes more than a second."""
        runs = {}
        for arguments in self.RUNS:
            ours, theirs = open_ends()
            run = SlowRun(self.folder / arguments[0], arguments, self.TABLE, theirs)
            runs[arguments[0]] = ours, run
            os.close(theirs)
        self.assertEqual(list(runs), COMMANDS)
        time.sleep(1.1)
        for _, run in runs.values():
            run.go_on()
        seen = {command: all_that_comes(ours) for command, (ours, _) in runs.items()}
        self.assertEqual([command for command, (_, run) in runs.items() if run.process.wait() != 0],
                         ['check'])
        return seen

    def test_a_bar_shows_on_a_terminal_what_takes_more_than_a_second(self):
        for command, seen in self.seen(pty.openpty).items():
            with self.subTest(command=command):
                self.assertRegex(seen, f'^{self.SHOWN}+$')

    def test_the_bar_stays_while_the_library_is_at_work(self):
        runs = []
        for arguments in self.RUNS:
            if arguments[0] not in ('set', 'insert', 'delete', 'repair', 'import'):
                continue
            ours, theirs = pty.openpty()
            run = SlowRun(self.folder / arguments[0],
                          [argument.replace('new.tab', 'actes.tab') for argument in arguments],
                          self.TABLE, theirs)
            os.close(theirs)
            # The library waits for it.
            held = os.open(run.folder / 'actes.tab', os.O_RDONLY)
            fcntl.flock(held, fcntl.LOCK_EX)
            runs.append((arguments[0], run, ours, held))
        time.sleep(1.1)
        for command, run, ours, held in runs:
            with self.subTest(command=command):
                run.go_on()
                seen = b''
                while not seen.endswith(b' %') or select.select([ours], [], [], 0.2)[0]:
                    seen += os.read(ours, 4096)  # raises at the end of the run
                os.close(held)
                self.assertRegex(all_that_comes(ours), '\r\x1b\\[K$')
                self.assertEqual(run.process.wait(), 0)

    def test_elsewhere_there_is_no_bar(self):
        self.assertEqual(set(self.seen(os.pipe).values()), {''})

    def test_a_bar_gives_way_to_what_the_same_terminal_gets(self):
        ours, theirs = pty.openpty()
        run = SlowRun(self.folder / 'show', ['show', 'pipe'], self.TABLE, theirs, stdout=theirs)
        os.close(theirs)
        time.sleep(1.1)
        run.go_on()
        seen = all_that_comes(ours)
        self.assertEqual(run.process.wait(), 0)
        self.assertRegex(seen, f'^{self.SHOWN}+Actes\r\n{self.SHOWN}Version: 2\r\n')
        self.assertEqual(re.sub(self.SHOWN, '', seen).encode(), self.TABLE)
