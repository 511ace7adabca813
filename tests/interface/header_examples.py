# SPDX-License-Identifier: MIT
"""header_examples.py <cc> <include folder> <library> <scratch folder> <flag>...: every example in a
comment of the public headers is true. The flags are those of programs that use the library.

An example is a line of its own, which ends with a comma where it goes on in the next line:

    Get_Date_Incr(20001231, 1) -> 20010101
    intcod_i("  +12 ", value) -> 0, text = "+12", value = 12
    a_org = 1980; ZRV_Build_Date_short("07/03/79", out) -> 0, out = "20790307"

The names are those of the declared parameters. A text between quotes is handed over in a buffer
named like its parameter; a parameter's own name hands over what is to be filled. After the arrow
come the result and what the call leaves behind. A text there includes its terminator; with "..." it
ends without one, in front of what was there before. What is set in front of the call is a parameter
or a global of the library, and `now` is the time of the clock."""
import pathlib
import re
import subprocess
import sys

# These headers show each of their functions.
SHOWN_WHOLE = ['codecs.h', 'dates.h']

TEXT = r'"(?:[^"\\]|\\.)*"'
EXAMPLE = re.compile(rf'^\s*(?:/?\*)?\s*((?:\w+ = (?:{TEXT}|-?\w+)(?:, |; ))*)(\w+)'
                     rf'\(((?:[^"()]|{TEXT})*)\) -> (.*)$')

FRAME = r'''
#include <stdio.h>
#include <string.h>
#include <time.h>

#include <korvel/korvel.h>

enum { kRoom = 512, kUntouched = '#' };

static int wrong;
static int quiet;
static time_t now;

/* The library reads this clock. */
time_t time(time_t *out) {
  if (out) *out = now;
  return now;
}

static void setClock(const char *text) {
  struct tm fields;
  memset(&fields, 0, sizeof fields);
  if (sscanf(text, "%d-%d-%d %d:%d:%d", &fields.tm_year, &fields.tm_mon, &fields.tm_mday,
             &fields.tm_hour, &fields.tm_min, &fields.tm_sec) != 6) {
    printf("no time: %s\n", text);
    wrong++;
  }
  fields.tm_year -= 1900;
  fields.tm_mon -= 1;
  fields.tm_isdst = -1;
  now = mktime(&fields);
}

static void fill(char *buffer, const char *bytes, size_t size) {
  memset(buffer, kUntouched, kRoom);
  memcpy(buffer, bytes, size);
}

static void differs(const char *where, const char *what) {
  wrong++;
  if (!quiet) printf("%s: not so: %s\n", where, what);
}

static void checkNumber(const char *where, const char *what, double is, double wanted) {
  if (is == wanted) return;
  differs(where, what);
  if (!quiet) printf("  it is %.17g\n", is);
}

static void checkText(const char *where, const char *what, const char *is, const char *wanted,
                      size_t size, int terminated) {
  if (is && memcmp(is, wanted, size - 1) == 0 &&
      is[size - 1] == (terminated ? 0 : kUntouched)) return;
  differs(where, what);
  if (!quiet) printf("  it is \"%.*s\"\n", is ? kRoom / 2 : 0, is ? is : "");
}
'''


def top_level(text):
    """The parts of a list, split at the commas outside texts."""
    parts = re.findall(rf'(?:[^",]|{TEXT})+', text)
    return [part.strip() for part in parts]


class Declaration:
    def __init__(self, result, name, parameters):
        self.result = result.strip()
        self.name = name
        self.types = {}
        for parameter in [] if parameters.strip() == 'void' else parameters.split(','):
            kind, word = re.match(r'\s*(.*?)(\w+)\s*$', parameter, re.S).groups()
            self.types[word] = ' '.join(kind.split())

    def is_text(self, name):
        return self.types[name] in ('char *', 'const char *')

    def pointed(self, name):
        found = re.match(r'(?:const )?(int|double|float) \*$', self.types[name])
        return found and found[1]


class Example:
    def __init__(self, where, text, declaration):
        self.where, self.text, self.declaration = where, text, declaration
        settings, self.name, arguments, results = EXAMPLE.match(text).groups()
        self.settings = [re.match(rf'(\w+) = ({TEXT}|\S+)', part).groups()
                         for part in re.findall(rf'\w+ = (?:{TEXT}|[^\s;,]+)', settings)]
        self.arguments = top_level(arguments)
        self.results = top_level(results)
        if len(self.arguments) != len(declaration.types):
            self.refuse('another number of arguments than declared')

    def refuse(self, why):
        sys.exit(f'{self.where}: {why}: {self.text}')

    def variables(self):
        """Which parameters need a variable, and what it holds before the call."""
        names = {name: None for name in self.declaration.types if any(
            re.search(rf'\b{name}\b', re.sub(TEXT, '', argument)) for argument in self.arguments)}
        for name, argument in zip(self.declaration.types, self.arguments):
            if self.declaration.is_text(name) and argument.startswith('"'):
                names[name] = argument
            elif self.declaration.pointed(name) and re.match(r'[-\d]', argument):
                names[name] = argument
        names.update((name, value) for name, value in self.settings
                     if name in self.declaration.types)
        return names

    def declared(self):
        for name, value in self.variables().items():
            if self.declaration.is_text(name):
                yield f'char {name}[kRoom];'
                yield f'fill({name}, {value}, sizeof {value});' if value else \
                    f'fill({name}, "", 0);'
            elif self.declaration.pointed(name):
                yield f'{self.declaration.pointed(name)} {name} = {value or -77};'
            else:
                self.refuse(f'no variable can be made for {name}')

    def globals(self):
        return [(name, value) for name, value in self.settings
                if name not in self.declaration.types and name != 'now']

    def call(self):
        passed = []
        for name, argument in zip(self.declaration.types, self.arguments):
            if argument == 'null':
                passed.append('0')
            elif self.declaration.is_text(name) and argument.startswith('"'):
                passed.append(name)
            elif self.declaration.pointed(name) and re.match(rf'{name}$|[-\d]', argument):
                passed.append(f'&{name}')
            else:
                passed.append(argument)
        return f'{self.name}({", ".join(passed)})'

    def check(self, what, is_, wanted):
        told = '"' + what.replace('\\', '\\\\').replace('"', '\\"') + '"'
        where = f'"{self.where}", {told}'
        text = re.fullmatch(rf'({TEXT})(\.\.\.)?', wanted)
        if text:
            return f'checkText({where}, {is_}, {text[1]}, sizeof {text[1]}, {int(not text[2])});'
        if wanted == 'null':
            return f'if ({is_} != 0) differs({where});'
        return f'checkNumber({where}, {is_}, {wanted});'

    def checked(self):
        call = self.call()
        returned = [result for result in self.results if not re.match(r'\w+ = ', result)]
        if len(returned) > 1 or returned != self.results[:len(returned)]:
            self.refuse('one result comes after the arrow, then what the call leaves')
        if returned:
            kind = self.declaration.result
            yield f'{kind}{"" if kind.endswith("*") else " "}returned = {call};'
            yield self.check(f'{self.text.split(" -> ")[0]} -> {returned[0]}', 'returned',
                             returned[0])
        else:
            yield f'{call};'
        for result in self.results[len(returned):]:
            name, wanted = re.match(r'(\w+) = (.*)', result).groups()
            yield self.check(f'{self.text.split(" -> ")[0]} -> {result}', name, wanted)

    def function(self, number):
        lines = list(self.declared())
        lines += [f'setClock({value});' for name, value in self.settings if name == 'now']
        for name, value in self.globals():
            lines += [f'__typeof__({name}) before_{name} = {name};', f'{name} = {value};']
        lines += self.checked()
        lines += [f'{name} = before_{name};' for name, _ in self.globals()]
        body = '\n'.join(f'  {line}' for line in lines)
        return f'static void example{number}(void) {{\n{body}\n}}\n'


def declarations(headers):
    found = {}
    for text in headers.values():
        bare = re.sub(r'/\*.*?\*/', '', text, flags=re.S)
        for match in re.finditer(r'^KORVEL_API ((?:\w+ )+\*?)(\w+)\(([^()]*)\);', bare, re.M):
            found[match[2]] = Declaration(*match.groups())
    return found


def examples(headers, declared):
    for header, text in headers.items():
        line, lines = 0, text.split('\n')
        while line < len(lines):
            where, example = f'{header}:{line + 1}', lines[line]
            while EXAMPLE.match(example) and example.endswith(','):
                line += 1
                example += ' ' + lines[line].strip()
            line += 1
            example = re.sub(r'\s*\*/\s*$', '', example)
            found = EXAMPLE.match(example)
            if not found and ') -> ' in example:
                sys.exit(f'{where}: not an example, though it has an arrow:{example}')
            if found and found[2] not in declared:
                sys.exit(f'{where}: nothing declares {found[2]}')
            if found:
                yield Example(where, re.sub(r'^[\s/*]*', '', example), declared[found[2]])


def program(found, untrue):
    functions, calls = [], ['  quiet = 1;']
    for number, example in enumerate(untrue + found):
        functions.append(example.function(number))
        if number == len(untrue):
            calls += ['  quiet = wrong = 0;']
        calls.append(f'  example{number}();')
        if number < len(untrue):
            calls += [f'  if (wrong != {number + 1}) return puts("untrue, and believed: '
                      f'{example.name}"), 2;']
    calls.append('  return wrong != 0;')
    main = 'int main(void) {\n' + '\n'.join(calls) + '\n}\n'
    return FRAME + '\n' + '\n'.join(functions) + '\n' + main


# Each of them is wrong in one thing, which the program has to see.
UNTRUE = ['utdately(1900) -> 1', 'ZRV_Inv_Date("20040307", out) -> out = "07/03/200"',
          'intcod_i("12", value) -> 0, value = 13', 'szcopy(d, 3, "abc", 3) -> 1, d = "abc"',
          'utdatemm(3) -> "MAI"', 'Get_item_liste("a", 0) -> null',
          'LongToNUM(7, destination, 2) -> 0, destination = "0"...']


def main():
    compiler, include, library, scratch, *flags = sys.argv[1:]
    headers = {path.name: path.read_text() for path in
               sorted(pathlib.Path(include).glob('korvel/*.h'))}
    declared = declarations(headers)
    found = list(examples(headers, declared))
    shown = {example.name for example in found}
    for header in SHOWN_WHOLE:
        missing = declarations({header: headers[header]}).keys() - shown
        if missing:
            sys.exit(f'{header}: no example of ' + ', '.join(sorted(missing)))
    if len(found) < 60:
        sys.exit(f'only {len(found)} examples found')
    untrue = [Example('untrue', text, declared[EXAMPLE.match(text)[2]]) for text in UNTRUE]

    folder = pathlib.Path(scratch)
    folder.mkdir(parents=True, exist_ok=True)
    source, built = folder / 'header_examples.c', folder / 'header_examples'
    source.write_text(program(found, untrue))
    home = pathlib.Path(library).parent
    subprocess.run([compiler, '-std=gnu99', '-Wall', '-Werror', *flags, '-I', include, str(source),
                    '-o', str(built), library, f'-Wl,-rpath,{home}'], check=True)
    if subprocess.run([str(built)]).returncode != 0:
        sys.exit('an example in a header is untrue')
    print(f'{len(found)} examples of {len(shown)} functions, all true')


main()
