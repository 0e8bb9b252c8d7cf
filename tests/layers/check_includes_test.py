"""Tests that the check of the includes finds what it is for."""

import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import check_includes

ALLOWED = {"core": set(), "model": {"core"}, "parse": {"core", "model"}}


class CheckIncludes(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = folder.name

    def write(self, path, *lines):
        path = os.path.join(self.root, "krofx", path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")
        return path

    def errors(self):
        return check_includes.check([self.root], ALLOWED)

    def test_takes_includes_of_the_layers_below(self):
        self.write("parse/engine.cpp", '#include "krofx/parse/engine.h"', "#include <vector>",
                   '#include "krofx/model/object.h"', '#include "krofx/core/types.h"')
        self.assertEqual(self.errors(), [])

    def test_names_file_and_line_of_an_upward_include(self):
        for name in ("object.h", "object.cpp"):
            with self.subTest(name):
                path = self.write("model/" + name, "// An object.", "",
                                  '#include "krofx/core/types.h"',
                                  '  #  include "krofx/parse/engine.h"')
                self.assertEqual(self.errors(), [
                    f"{path}:4: krofx/parse/engine.h is not below model, which is on core"])
                os.remove(path)

    def test_reads_angle_brackets_too(self):
        path = self.write("core/types.h", "#include <krofx/model/object.h>")
        self.assertEqual(self.errors(), [
            f"{path}:1: krofx/model/object.h is not below core, which is on no layer"])

    def test_refuses_a_header_that_gathers_all_layers(self):
        path = self.write("parse/engine.cpp", '#include "krofx/krofx.h"')
        self.assertEqual(self.errors(), [f"{path}:1: krofx/krofx.h is above all layers"])

    def test_refuses_a_folder_that_is_no_layer(self):
        path = self.write("extra/more.cpp", '#include "krofx/core/types.h"',
                          '#include "krofx/core/memory.h"')
        self.assertEqual(self.errors(), [f"{path}: the folder extra is no layer"])

    def test_refuses_an_include_that_says_no_layer(self):
        path = self.write("core/types.cpp", '#include "types.h"')
        self.write("core/types.h", '#include "krofx/core/export.h"')
        self.assertEqual(self.errors(), [f'{path}:1: "types.h" is not given from krofx/ on'])

    def test_names_the_includes_that_make_a_cycle_between_folders(self):
        first = self.write("model/a/first.h", '#include "krofx/model/b/second.h"')
        second = self.write("model/b/second.h", "", '#include "krofx/model/a/first.h"')
        self.write("model/c/third.h", '#include "krofx/model/a/first.h"')
        self.assertEqual(self.errors(), [
            f"{first}:1: krofx/model/b/second.h closes a cycle between model/a, model/b",
            f"{second}:2: krofx/model/a/first.h closes a cycle between model/a, model/b"])

    def test_finds_a_cycle_over_three_folders(self):
        self.write("model/a/a.h", '#include "krofx/model/b/b.h"')
        self.write("model/b/b.h", '#include "krofx/model/c/c.h"')
        self.write("model/c/c.h", '#include "krofx/model/a/a.h"')
        self.assertEqual(len(self.errors()), 3)

    def test_counts_a_folder_internal_as_a_part_of_its_parent(self):
        self.write("core/array.h", '#include "krofx/core/internal/block.h"')
        self.write("core/internal/block.h", '#include "krofx/core/types.h"')
        self.assertEqual(self.errors(), [])

    def test_refuses_to_judge_nothing(self):
        self.assertEqual(self.errors(), [f"no includes below {self.root}"])
        self.assertEqual(check_includes.check_program(self.root), [f"no includes below {self.root}"])

    def test_finds_a_cycle_between_the_folders_of_a_program(self):
        program = os.path.join(self.root, "krofx")
        self.write("main.cpp", '#include "input/file.h"', '#include "krofx/core/types.h"')
        self.write("input/file.h", '#include "output/text.h"', "#include <vector>")
        self.assertEqual(check_includes.check_program(program), [])
        path = self.write("output/text.h", '#include "exit_status.h"')
        errors = check_includes.check_program(program)
        self.assertEqual(errors[-1], f"{path}:1: exit_status.h closes a cycle between ., input, output")
        self.assertEqual(len(errors), 3)


if __name__ == "__main__":
    unittest.main()
