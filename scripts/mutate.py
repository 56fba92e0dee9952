"""Makes small wrong changes in src/, one at a time, and counts those that some test catches.

Works on a copy of the tree under build/mutation, so nothing is ever changed in the tree it is called from. The same
sources and the same seed give the same changes. Called by mutate.sh.
"""

import argparse
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import time
from dataclasses import dataclass

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREE = ROOT / "build/mutation/tree"
BUILD = ROOT / "build/mutation/build"
REQUIRED_SHARE = 0.95

# The test programs that run for a change in a folder of src/, in the order in which they are likely to catch it.
TESTS = {
    "logging": ["logging_test", "settings_test", "zones_test", "detector_test", "counter_test"],
    "settings": ["settings_test", "zones_test", "detector_test", "counter_test"],
    "trigonometry": ["trigonometry_test", "core_test", "zones_test"],
    "core": ["core_test", "counter_test", "monitor_test"],
    "planar": ["planar_test", "zones_test", "counter_test", "detector_test", "monitor_test"],
    "zones": ["zones_test", "detector_test", "classifier_index_test", "monitor_test"],
    "detector": ["detector_test", "monitor_test", "point_classifier_test"],
    "counter": ["counter_test", "monitor_test"],
    "classify": ["point_classifier_test", "classifier_index_test", "monitor_test"],
    "monitor": ["monitor_test", "monitor_walk_test"],
}

# An operator with white space on both sides is a binary one; brackets of templates, references and pointers have none.
BINARY = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"],
    "&": ["|"], "|": ["&"], "^": ["|"], "<<": [">>"], ">>": ["<<"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "|=": ["&="], "&=": ["|="], "^=": ["|="],
}
WORDS = {
    "true": "false", "false": "true", "break": "continue", "continue": "break", "min": "max", "max": "min",
    "floor": "ceil", "ceil": "floor", "sin": "cos", "cos": "sin", "all_of": "any_of", "any_of": "all_of",
    "none_of": "all_of", "lower_bound": "upper_bound", "upper_bound": "lower_bound", "LEFT": "RIGHT", "RIGHT": "LEFT",
}
MEMBERS = {"x": "y", "y": "x", "first": "second", "second": "first", "front": "back", "back": "front"}

TOKEN = re.compile(
    r"""(?P<ignored>\s+|//[^\n]*|/\*.*?\*/|^\#(?:\\\n|[^\n])*|\[\[.*?\]\]|\bstatic_assert\b[^;]*;)
      |(?P<raw>R"(?P<delimiter>[^(\s]*)\(.*?\)(?P=delimiter)")
      |(?P<string>"(?:[^"\\\n]|\\.)*")
      |(?P<char>'(?:[^'\\\n]|\\.)*')
      |(?P<number>(?:0[xX][\da-fA-F']+|\d[\d'.]*(?:[eE][-+]?\d+)?)[uUlLfF]*)
      |(?P<word>[A-Za-z_]\w*)
      |(?P<op><<=|>>=|<=>|->|::|\+\+|--|&&|\|\||[-+*/%&|^<>=!]=|<<|>>|.)""",
    re.VERBOSE | re.DOTALL | re.MULTILINE)

# A statement that is only a call, an assignment or a step. Calls that reserve memory change no answer, so tests need not
# catch their removal.
STATEMENT = re.compile(
    r"(?:\+\+|--|\*)?[A-Za-z_]\w*(?:::\w+|\.\w+|->\w+|\[[^\]]*\]|\(.*?\))*\s*(?:[-+*/|&^]?=[^=]|;|\+\+|--)", re.DOTALL)
NO_STATEMENT = re.compile(r"(?:return|throw|break|continue|default|delete)\b|[A-Z][A-Z_]+\(|.*(?:reserve\(|= default|= delete)",
                          re.DOTALL)


@dataclass(frozen=True)
class Change:
    path: str
    begin: int
    end: int
    line: int
    before: str
    after: str

    def __str__(self):
        before = " ".join(self.before.split())
        if not self.after:
            return f"{self.path}:{self.line}: `{before}` removed"
        return f"{self.path}:{self.line}: `{before}` -> `{' '.join(self.after.split())}`"


def closing(tokens, at):
    """The index of the token that closes the bracket at index `at`, or None."""
    depth = 0
    for i in range(at, len(tokens)):
        token = tokens[i].group()
        depth += token in "([{" if len(token) == 1 else 0
        depth -= token in ")]}" if len(token) == 1 else 0
        if depth == 0:
            return i
    return None


def is_label_end(text, token):
    line = text[text.rfind("\n", 0, token.start()) + 1:token.end()]
    return re.fullmatch(r"\s*(?:case .*|default):", line) is not None


def statement_end(tokens, at):
    """The index of the semicolon of a statement without others inside, or None."""
    depth = 0
    for i in range(at, len(tokens)):
        token = tokens[i].group()
        if token in ("(", "[", "{"):
            depth += 1
        elif token in (")", "]", "}"):
            depth -= 1
            if depth < 0:
                return None
        elif token == ";":
            return i if depth == 0 else None
    return None


def number(literal):
    digits = literal.rstrip("uUlLfF")
    if digits in ("0", "0.0"):
        return "1" + literal[1:]
    if digits in ("1", "1.0"):
        return "0" + literal[1:]
    return f"({literal} + 1)"


def token_changes(text, tokens, i):
    """What the token at index i can be changed into."""
    token = tokens[i]
    value, kind = token.group(), token.lastgroup
    previous = tokens[i - 1].group() if i > 0 else ""
    following = tokens[i + 1].group() if i + 1 < len(tokens) else ""
    if kind == "string":
        return ['"~' + value[1:]]
    if kind == "char":
        return ["'~'"]
    if kind == "number":
        return [number(value)]
    if kind == "word":
        if previous in (".", "->") and value in MEMBERS:
            return [MEMBERS[value]]
        return [WORDS[value]] if value in WORDS else []
    if kind != "op":
        return []
    if value in BINARY and text[token.start() - 1].isspace() and text[token.end()].isspace():
        return BINARY[value]
    if value in ("++", "--"):
        return ["--" if value == "++" else "++"]
    if value == "!" or (value == "-" and (previous in ("(", ",", "?", ":", "=", "{") or previous == "return")):
        return [""] if following else []
    return []


def changes_of(path, text, chance):
    """All possible changes of one file. If a place has several, `chance` picks one."""
    tokens = [token for token in TOKEN.finditer(text) if token.lastgroup != "ignored"]
    found = []

    def add(begin, end, after):
        found.append(Change(path, begin, end, text.count("\n", 0, begin) + 1, text[begin:end], after))

    for i, token in enumerate(tokens):
        replacements = token_changes(text, tokens, i)
        if replacements:
            add(token.start(), token.end(), chance.choice(replacements))
        if token.group() == "if" and tokens[i + 1].group() == "(":
            close = closing(tokens, i + 1)
            condition = text[tokens[i + 1].end():tokens[close].start()]
            if not re.search(r"(?<![=!<>])=(?!=)", condition):
                add(tokens[i + 1].end(), tokens[close].start(), f"!({condition})")
        if i > 0 and (tokens[i - 1].group() in (";", "{", "}") or is_label_end(text, tokens[i - 1])):
            end = statement_end(tokens, i)
            if end is not None:
                statement = text[token.start():tokens[end].end()]
                if STATEMENT.match(statement) and not NO_STATEMENT.match(statement):
                    add(token.start(), tokens[end].start(), "")
    return found


def all_changes(seed, only):
    """All changes in the order in which they are tried: spread evenly, so that every file comes early."""
    keyed = []
    for file in sorted((TREE / "src").rglob("*")):
        path = file.relative_to(TREE).as_posix()
        if file.suffix not in (".cpp", ".h") or path.split("/")[1] not in TESTS:
            continue
        # One generator for each file, so that an edit in one file does not change the choices in the others.
        chance = random.Random(f"{seed} {path}")
        changes = changes_of(path, file.read_text(), chance)
        changes = [change for change in changes if only in f"{path}:{change.line}:"]
        chance.shuffle(changes)
        offset = chance.random()
        keyed += [((k + offset) / len(changes) if k > 0 else 0.0, change) for k, change in enumerate(changes)]
    return [change for _, change in sorted(keyed, key=lambda entry: (entry[0], str(entry[1])))]


def copy_tree():
    """Brings the copy up to date. Files that are the same keep their time, so they are not compiled again."""
    names = set()
    for part in ("CMakeLists.txt", "cmake", "include", "src", "tests", "fuzz"):
        files = [ROOT / part] if (ROOT / part).is_file() else (ROOT / part).rglob("*")
        names |= {file.relative_to(ROOT).as_posix() for file in files if file.is_file()}
    for name in names:
        source, target = ROOT / name, TREE / name
        if not target.exists() or source.read_bytes() != target.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, target)
    for file in TREE.rglob("*"):
        if file.is_file() and file.relative_to(TREE).as_posix() not in names:
            file.unlink()


def build(targets):
    return subprocess.run(["ninja", "-C", BUILD, "-j1", *targets], capture_output=True, text=True)


def limit_memory():
    # A change may make a loop endless, which can fill the memory before the time limit.
    resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def passes(program, timeout):
    try:
        done = subprocess.run([BUILD / "tests" / program.folder / program.name, "--gtest_fail_fast", "--gtest_brief=1"],
                              cwd=BUILD, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=timeout, preexec_fn=limit_memory)
        return done.returncode == 0
    except subprocess.TimeoutExpired:
        return False


@dataclass(frozen=True)
class Program:
    name: str
    folder: str


def programs():
    found = {}
    for listing in sorted((TREE / "tests").glob("*/CMakeLists.txt")):
        for name in re.findall(r"orvantis_add_test\(\s*(\w+)", listing.read_text()):
            found[name] = Program(name, listing.parent.name)
    return {name: found[name] for names in TESTS.values() for name in names}


def say(text):
    print(text, flush=True)


def main():
    parser = argparse.ArgumentParser(prog="mutate.sh", description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=320, help="how many changes that compile (%(default)s)")
    parser.add_argument("--seed", type=int, default=1, help="which changes (%(default)s)")
    parser.add_argument("--only", default="", metavar="TEXT", help="changes whose path:line: contains this")
    options = parser.parse_args()

    copy_tree()
    waiting = all_changes(options.seed, options.only)
    say(f"{len(waiting)} places and changes known")
    known = programs()
    subprocess.run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                    "-DCMAKE_CXX_FLAGS_DEBUG=-O1 -D_GLIBCXX_ASSERTIONS",
                    "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                    "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST", "-DORVANTIS_BUILD_APPS=OFF"],
                   check=True, stdout=subprocess.DEVNULL)
    needed = sorted({name for change in waiting for name in TESTS[change.path.split("/")[1]]})
    done = build(needed)
    if done.returncode != 0:
        sys.exit(done.stdout + done.stderr)
    timeouts = {}
    for name in needed:
        started = time.monotonic()
        if not passes(known[name], 600):
            sys.exit(f"{name} fails without any change")
        seconds = time.monotonic() - started
        timeouts[name] = 10 + 5 * seconds
        say(f"{name} passes unchanged in {seconds:.1f} s")

    counted = 0
    survivors = []
    current = None

    def restore():
        if current is not None:
            (TREE / current).write_text(original)

    # Sorted by file within a round, so that few objects are compiled only to undo a change.
    while waiting and counted < options.count:
        size = options.count - counted
        group, waiting = sorted(waiting[:size], key=lambda change: (change.path, change.line)), waiting[size:]
        for change in group:
            if change.path != current:
                restore()
                current = change.path
                original = (TREE / current).read_text()
            (TREE / current).write_text(original[:change.begin] + change.after + original[change.end:])
            names = TESTS[current.split("/")[1]]
            started = time.monotonic()
            if build(names).returncode != 0:
                say(f"           does not compile  {change}")
                continue
            built = time.monotonic()
            catcher = next((name for name in names if not passes(known[name], timeouts[name])), None)
            counted += 1
            if catcher is None:
                survivors.append(change)
            times = f"{built - started:.0f} + {time.monotonic() - built:.0f} s"
            say(f"[{counted:3}/{options.count}] {catcher or 'SURVIVED'}  {change}  ({times})")
    restore()

    share = 1 - len(survivors) / counted if counted else 0.0
    say(f"\n{counted} changes counted, {counted - len(survivors)} caught: {100 * share:.1f} %")
    for change in survivors:
        say(f"  survived: {change}")
    sys.exit(0 if share >= REQUIRED_SHARE else 1)


if __name__ == "__main__":
    main()
