#!/usr/bin/env python3
"""Checks that the code under src/ keeps the include rules written in scripts/dependency-rules.txt.

    python3 scripts/check-dependencies.py [--root DIR] [--rules FILE]

Every #include (and #import) in the *.h, *.cpp, *.mm and *.hpp files under DIR/src is checked
against the rules: which folder may include which, which files may include the platform's and the
toolkit's headers, which may include test stand-ins, and which texts only platform files may use.
Each broken rule is reported as "path:line: message", with the path relative to DIR.

Exit status: 0 when the rules hold, 1 when any is broken, 2 when the rules file cannot be read.
The rules are data: this script knows their kinds, the rules file names their folders and headers.
"""

import argparse
import fnmatch
import re
import shlex
import sys
from dataclasses import dataclass, field
from pathlib import Path, PurePosixPath

SOURCE_SUFFIXES = {".h", ".hpp", ".cpp", ".mm"}
INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]')
ANY_FOLDER = "*"


class RulesError(Exception):
    """A rules file that cannot be understood, with the number of the line at fault."""

    def __init__(self, line, message):
        super().__init__(message)
        self.line = line


@dataclass
class Rules:
    # Folder (relative to the root) -> (the folders its files may include, the rule's line).
    folders: dict = field(default_factory=dict)
    test_suffixes: list = field(default_factory=list)
    test_folders: list = field(default_factory=list)
    test_headers: list = field(default_factory=list)
    platform_suffixes: list = field(default_factory=list)
    platform_folders: list = field(default_factory=list)
    platform_headers: list = field(default_factory=list)
    toolkit_suffixes: list = field(default_factory=list)
    toolkit_folders: list = field(default_factory=list)
    toolkit_headers: list = field(default_factory=list)
    forbidden_texts: list = field(default_factory=list)  # (text, reason)


def folder_path(text):
    return PurePosixPath(text.rstrip("/"))


def read_rules(path):
    rules = Rules()
    lists = {
        "test-suffix": rules.test_suffixes, "test-folder": rules.test_folders,
        "test-header": rules.test_headers, "platform-suffix": rules.platform_suffixes,
        "platform-header": rules.platform_headers, "toolkit-suffix": rules.toolkit_suffixes,
        "toolkit-header": rules.toolkit_headers,
    }
    folder_lists = {"platform-folder": rules.platform_folders, "toolkit-folder": rules.toolkit_folders}
    # The allowed folders are checked once every folder line has been read, so the lines may come
    # in any order.
    allowed_at = []
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), start=1):
        try:
            words = shlex.split(line, comments=True)
        except ValueError as error:
            raise RulesError(number, f"cannot split the line into words ({error})")
        if not words:
            continue
        keyword, values = words[0], words[1:]
        if keyword == "folder":
            if len(values) < 2 or not values[0].endswith(":"):
                raise RulesError(number, "a folder line reads 'folder src/NAME: FOLDER...' "
                                         "(or '*' after the colon for every folder)")
            folder = folder_path(values[0][:-1])
            if folder.parts[:1] != ("src",):
                raise RulesError(number, f"folder {folder} does not lie in src/")
            if folder in rules.folders:
                raise RulesError(number, f"folder {folder} already has a rule, "
                                         f"on line {rules.folders[folder][1]}")
            rules.folders[folder] = (values[1:], number)
            allowed_at.append((number, values[1:]))
        elif keyword in lists or keyword in folder_lists:
            if not values:
                raise RulesError(number, f"'{keyword}' needs at least one value")
            if keyword in lists:
                lists[keyword].extend(values)
            else:
                folder_lists[keyword].extend(folder_path(value) for value in values)
        elif keyword == "forbidden-text":
            if len(values) < 2:
                raise RulesError(number, "a forbidden-text line reads 'forbidden-text TEXT REASON...'")
            rules.forbidden_texts.append((values[0], " ".join(values[1:])))
        else:
            raise RulesError(number, f"unknown rule '{keyword}'")
    for number, allowed in allowed_at:
        for name in allowed:
            if name != ANY_FOLDER and PurePosixPath("src", name) not in rules.folders:
                raise RulesError(number, f"'{name}' is not a folder that has a rule of its own")
    if not rules.folders:
        raise RulesError(None, "there are no folder rules")
    return rules


def blank_comments(text):
    """The text with every comment replaced by spaces, its line breaks kept, so that a commented-out
    include or a text named in a comment is not taken for code. String literals are kept."""
    out = []
    i, n = 0, len(text)
    while i < n:
        c = text[i]
        if text.startswith("//", i):
            end = text.find("\n", i)
            end = n if end < 0 else end
            out.append(" " * (end - i))
            i = end
        elif text.startswith("/*", i):
            end = text.find("*/", i + 2)
            end = n if end < 0 else end + 2
            out.append(re.sub(r"[^\n]", " ", text[i:end]))
            i = end
        elif c == '"' and re.search(r"(?:^|[^\w])(?:u8|u|U|L)?R$", text[max(0, i - 4):i]):
            # A raw string ends only at )delimiter", whatever it holds.
            opening = text.find("(", i)
            terminator = ")" + text[i + 1:opening] + '"'
            closing = text.find(terminator, opening) if opening >= 0 else -1
            end = n if closing < 0 else closing + len(terminator)
            out.append(text[i:end])
            i = end
        elif c == '"' or (c == "'" and not re.search(r"(?:^|[^\w.'])\d[\w.']*$", text[max(0, i - 40):i])):
            # A quote after a number's digits is a digit separator (1'000), not a character.
            end = i + 1
            while end < n and text[end] != c and text[end] != "\n":
                end += 2 if text[end] == "\\" else 1
            end = min(end + 1, n)
            out.append(text[i:end])
            i = end
        else:
            out.append(c)
            i += 1
    return "".join(out)


class Checker:
    def __init__(self, rules):
        self.rules = rules

    @staticmethod
    def _in_folder(path, folders):
        return any(path.parts[:len(folder.parts)] == folder.parts for folder in folders)

    @staticmethod
    def _stem_ends_with(path, suffixes, test_suffixes):
        endings = [s + t for s in suffixes for t in [""] + test_suffixes]
        return any(path.stem.endswith(ending) for ending in endings)

    def folder_of(self, path):
        """The longest folder with a rule that holds the path, or None."""
        matches = [f for f in self.rules.folders if path.parts[:len(f.parts)] == f.parts]
        return max(matches, key=lambda f: len(f.parts), default=None)

    def is_test(self, path):
        return (self._stem_ends_with(path, self.rules.test_suffixes, [])
                or any(part in self.rules.test_folders for part in path.parts[:-1]))

    def is_platform(self, path):
        return (self._stem_ends_with(path, self.rules.platform_suffixes, self.rules.test_suffixes)
                or self._in_folder(path, self.rules.platform_folders))

    def may_use_toolkit(self, path):
        return (self.is_platform(path)
                or self._stem_ends_with(path, self.rules.toolkit_suffixes, self.rules.test_suffixes)
                or self._in_folder(path, self.rules.toolkit_folders))

    @staticmethod
    def _matches(name, patterns):
        return any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns)

    def _platform_rule(self):
        suffixes = ", ".join("*" + s for s in self.rules.platform_suffixes)
        return (f"only platform files (named {suffixes}, or in a platform folder) may include it; "
                "move the code that needs it into one")

    def check_include(self, path, written):
        """The messages for one include in the file at path; written is the include as written,
        with its quotes or angle brackets."""
        name = written[1:-1]
        messages = []
        own = PurePosixPath("src", name)
        target_folder = self.folder_of(own)
        if target_folder is not None:
            folder = self.folder_of(path)
            allowed, _ = self.rules.folders[folder]
            if ANY_FOLDER not in allowed and target_folder not in [PurePosixPath("src", a) for a in allowed]:
                messages.append(f"includes {written}: {folder} may include only {', '.join(allowed)}")
            if self.is_platform(own) and not self.is_platform(path):
                messages.append(f"includes {written}, a platform header: {self._platform_rule()}")
        else:
            if self._matches(name, self.rules.platform_headers) and not self.is_platform(path):
                messages.append(f"includes {written}, a platform header: {self._platform_rule()}")
            if self._matches(name, self.rules.toolkit_headers) and not self.may_use_toolkit(path):
                suffixes = ", ".join("*" + s for s in self.rules.toolkit_suffixes)
                folders = ", ".join(str(f) for f in self.rules.toolkit_folders)
                messages.append(f"includes {written}, a toolkit header: only files named {suffixes}, "
                                f"platform files and files in {folders} may include it; move the code "
                                "that needs it into such a file")
        stand_in = (any(part in self.rules.test_folders for part in own.parts[:-1]) if target_folder
                    else self._matches(name, self.rules.test_headers))
        if stand_in and not self.is_test(path):
            folders = ", ".join(f + "/" for f in self.rules.test_folders)
            suffixes = ", ".join("*" + s for s in self.rules.test_suffixes)
            messages.append(f"includes {written}, which is for tests: only tests (named {suffixes}) "
                            f"and files in {folders} folders may include it")
        return messages

    def check_file(self, root, path):
        """Yields (line number, message) for each broken rule in the file at root/path."""
        if self.folder_of(path) is None:
            yield 1, ("lies in no folder that has a rule; add a folder line for it "
                      "to the dependency rules")
            return
        text = blank_comments((root / path).read_text(encoding="utf-8", errors="replace"))
        platform = self.is_platform(path)
        for number, line in enumerate(text.splitlines(), start=1):
            include = INCLUDE.match(line)
            if include:
                quote, name = include.groups()
                written = f"{quote}{name}{'>' if quote == '<' else quote}"
                for message in self.check_include(path, written):
                    yield number, message
            if not platform:
                for forbidden, reason in self.rules.forbidden_texts:
                    if forbidden in line:
                        yield number, f"uses {forbidden}, which {reason}: only platform files may"


def main():
    repository = Path(__file__).resolve().parent.parent
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--root", type=Path, default=repository,
                        help="the tree whose src/ folder is checked (default: this repository)")
    parser.add_argument("--rules", type=Path,
                        help="the rules file (default: ROOT/scripts/dependency-rules.txt)")
    arguments = parser.parse_args()
    root = arguments.root
    rules_path = arguments.rules or root / "scripts" / "dependency-rules.txt"

    try:
        checker = Checker(read_rules(rules_path))
    except OSError as error:
        print(f"check-dependencies: cannot read the rules: {error}", file=sys.stderr)
        return 2
    except RulesError as error:
        where = rules_path if error.line is None else f"{rules_path}:{error.line}"
        print(f"{where}: {error}", file=sys.stderr)
        return 2
    if not (root / "src").is_dir():
        print(f"check-dependencies: {root / 'src'} is not a folder", file=sys.stderr)
        return 2

    files = sorted(PurePosixPath(p.relative_to(root).as_posix()) for p in (root / "src").rglob("*")
                   if p.suffix in SOURCE_SUFFIXES and p.is_file())
    violations = 0
    for path in files:
        for number, message in checker.check_file(root, path):
            print(f"{path}:{number}: {message}")
            violations += 1
    def counted(count, noun):
        return f"{count or 'no'} {noun}{'' if count == 1 else 's'}"
    print(f"check-dependencies: {counted(len(files), 'file')} checked, {counted(violations, 'violation')}")
    return 1 if violations else 0


if __name__ == "__main__":
    sys.exit(main())
