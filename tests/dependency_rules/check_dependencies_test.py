#!/usr/bin/env python3
"""Runs scripts/check-dependencies.py with the real rules file on small throwaway trees, each
holding one broken rule or one allowed case, and checks what it reports."""

import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
CHECKER = REPOSITORY / "scripts" / "check-dependencies.py"
RULES = REPOSITORY / "scripts" / "dependency-rules.txt"
REPORT = re.compile(r"^(\S+):(\d+): (.*)$", re.MULTILINE)


def lines(*text):
    return "\n".join(text) + "\n"


class Run:
    def __init__(self, result):
        self.status = result.returncode
        self.output = result.stdout
        self.errors = result.stderr
        self.reports = [(path, int(line)) for path, line, _ in REPORT.findall(result.stdout)]
        self.messages = [message for _, _, message in REPORT.findall(result.stdout)]


def check(files, rules_text=None):
    """Runs the checker on a tree holding the given files (path: text) and a copy of the real rules
    in its scripts/ folder, or, when rules_text is given, those rules from a file outside the tree."""
    with tempfile.TemporaryDirectory() as temporary:
        root = Path(temporary) / "tree"
        (root / "scripts").mkdir(parents=True)
        (root / "src").mkdir()
        shutil.copy(RULES, root / "scripts" / "dependency-rules.txt")
        for path, text in files.items():
            (root / path).parent.mkdir(parents=True, exist_ok=True)
            (root / path).write_text(text)
        arguments = [sys.executable, str(CHECKER), "--root", str(root)]
        if rules_text is not None:
            rules = Path(temporary) / "other-rules.txt"
            rules.write_text(rules_text)
            arguments += ["--rules", str(rules)]
        return Run(subprocess.run(arguments, capture_output=True, text=True, timeout=60))


class BrokenRulesAreReported(unittest.TestCase):
    def assertReportedOnlyAt(self, files, path, line, words):
        run = check(files)
        self.assertEqual(run.status, 1, run.output + run.errors)
        self.assertEqual(run.reports, [(path, line)], run.output)
        self.assertIn(words, run.messages[0])

    def test_a_neutral_file_including_a_system_platform_header(self):
        self.assertReportedOnlyAt({"src/audio/x.cpp": lines(
            '#include "audio/output.h"', "", "#include <vector>", "#include <xcb/xcb.h>")},
            "src/audio/x.cpp", 4, "<xcb/xcb.h>, a platform header")

    def test_services_including_a_subsystem(self):
        self.assertReportedOnlyAt({"src/services/y.h": lines(
            "#pragma once", "", '#include "services/levels.h"', '#include "audio/output.h"')},
            "src/services/y.h", 4, "src/services may include only services")

    def test_updates_including_audio(self):
        self.assertReportedOnlyAt({"src/services/updates/z.cpp": lines(
            '#include "services/updates/z.h"', '#include "localization/localization.h"',
            '#include "audio/volume_control.h"')},
            "src/services/updates/z.cpp", 3, "src/services/updates may include only")

    def test_a_neutral_file_including_the_toolkit(self):
        self.assertReportedOnlyAt({"src/ui/w.cpp": lines(
            '#include "ui/w.h"', "", "#include <string>", "", "#include <QWidget>")},
            "src/ui/w.cpp", 5, "<QWidget>, a toolkit header")

    def test_a_non_test_file_including_a_fake(self):
        self.assertReportedOnlyAt({"src/audio/output.cpp": lines(
            '#include "audio/output.h"', '#include "audio/testing/fake_audio_hal.h"')},
            "src/audio/output.cpp", 2, "which is for tests")

    def test_a_neutral_file_including_our_own_platform_header(self):
        self.assertReportedOnlyAt({"src/display/brightness.cpp": lines(
            '#include "display/brightness.h"', '#include "display/edid.h"', "",
            '#include "display/screens_x11.h"')},
            "src/display/brightness.cpp", 4, '"display/screens_x11.h", a platform header')

    def test_a_neutral_file_including_a_header_from_a_platform_folder(self):
        self.assertReportedOnlyAt({"src/audio/control_plan.cpp": lines(
            '#include "audio/control_plan.h"', '#include "audio/pulse/pulse_snapshot.h"')},
            "src/audio/control_plan.cpp", 2, '"audio/pulse/pulse_snapshot.h", a platform header')

    def test_a_non_test_file_including_the_test_support_library(self):
        self.assertReportedOnlyAt({"src/dock/d.cpp": lines(
            '#include "dock/d.h"', "", '#include "support/temporary_directory.h"')},
            "src/dock/d.cpp", 3, "which is for tests")

    def test_a_neutral_file_reaching_the_x_connection_without_an_include(self):
        self.assertReportedOnlyAt({"src/ui/v_qt.cpp": lines(
            '#include "ui/v_qt.h"', "", "#include <QGuiApplication>", "",
            "auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();")},
            "src/ui/v_qt.cpp", 5, "uses QNativeInterface::QX11Application")

    def test_a_file_in_a_folder_without_a_rule(self):
        self.assertReportedOnlyAt({"src/elsewhere/e.cpp": lines("#include <vector>")},
                                  "src/elsewhere/e.cpp", 1, "no folder that has a rule")


class AllowedIncludesPass(unittest.TestCase):
    def assertPasses(self, path, text):
        run = check({path: text})
        self.assertEqual(run.status, 0, run.output + run.errors)
        self.assertEqual(run.reports, [], run.output)
        self.assertIn("1 file checked", run.output)

    def test_a_linux_file_including_a_system_header(self):
        self.assertPasses("src/display/b_linux.cpp", lines("#include <unistd.h>", "#include <sys/stat.h>"))

    def test_a_file_in_a_platform_folder_including_a_system_header(self):
        self.assertPasses("src/audio/pulse/pulse_context.cpp", lines(
            '#include "audio/pulse/pulse_snapshot.h"', "#include <pulse/context.h>"))

    def test_the_application_including_the_toolkit(self):
        self.assertPasses("src/app/app.cpp", lines('#include "app/app.h"', "#include <QWidget>"))

    def test_keys_including_audio(self):
        self.assertPasses("src/keys/k.cpp", lines('#include "keys/k.h"', '#include "audio/output.h"'))

    def test_a_test_including_a_fake(self):
        self.assertPasses("src/audio/output_test.cpp", lines(
            '#include "audio/output.h"', '#include "audio/testing/fake_audio_hal.h"',
            '#include "support/temporary_directory.h"'))

    def test_commented_out_includes_and_texts(self):
        self.assertPasses("src/audio/x.cpp", lines(
            '#include "audio/output.h"', "// #include <xcb/xcb.h>", "/* #include <QWidget>",
            '#include "ui/popover_qt.h" */', "int x = 1; // not QNativeInterface::QX11Application",
            'const char* url = "https://example.com"; int y = 1\'000;'))


class MalformedRulesStopTheCheck(unittest.TestCase):
    def assertRefusedAtLine(self, bad_line, words):
        real = RULES.read_text()
        line = real.count("\n") + 1
        run = check({"src/audio/x.cpp": lines("#include <xcb/xcb.h>")}, real + bad_line + "\n")
        self.assertEqual(run.status, 2, run.output + run.errors)
        self.assertRegex(run.errors, rf"other-rules\.txt:{line}: .*{re.escape(words)}")
        self.assertEqual(run.reports, [], run.output)

    def test_an_unknown_rule(self):
        self.assertRefusedAtLine("allow src/audio: services", "unknown rule 'allow'")

    def test_a_folder_line_without_its_colon(self):
        self.assertRefusedAtLine("folder src/tools services", "a folder line reads")

    def test_a_folder_allowed_that_has_no_rule(self):
        self.assertRefusedAtLine("folder src/tools: services nowhere", "'nowhere' is not a folder")


if __name__ == "__main__":
    unittest.main(verbosity=2)
