"""How coverage_report.py reads what llvm-cov exports."""
import pathlib
import tempfile
import unittest

import coverage_report


class Lines(unittest.TestCase):
    def test_count_from_the_beginning_of_a_region_to_its_end(self):
        # line, column, count, counted, begins a region, gap
        segments = [[1, 10, 4, True, True, False], [3, 5, 0, True, True, False],
                    [3, 9, 4, True, False, False], [5, 2, 0, False, False, False]]
        self.assertEqual(coverage_report.line_counts(segments), {1: 4, 2: 4, 3: 4, 4: 4, 5: 4})

    def test_count_with_the_largest_of_their_regions(self):
        segments = [[1, 1, 0, True, True, False], [2, 1, 7, True, True, False],
                    [2, 9, 0, True, False, False], [3, 1, 0, False, False, False]]
        self.assertEqual(coverage_report.line_counts(segments), {1: 0, 2: 7, 3: 0})

    def test_do_not_count_without_code(self):
        segments = [[1, 1, 2, True, True, False], [1, 9, 0, False, False, False],
                    [4, 1, 3, True, True, False], [4, 5, 0, False, False, False]]
        self.assertEqual(coverage_report.line_counts(segments), {1: 2, 4: 3})

    def test_do_not_begin_in_a_gap(self):
        segments = [[1, 1, 2, True, True, False], [2, 1, 9, True, True, True],
                    [3, 1, 0, False, False, False]]
        self.assertEqual(coverage_report.line_counts(segments), {1: 2, 2: 2, 3: 9})


class Outcomes(unittest.TestCase):
    def test_add_up_over_instantiations(self):
        counts = coverage_report.outcome_counts([[1, 2, 1, 8, 5, 0, 0, 0, 4],
                                                 [1, 2, 1, 8, 0, 0, 0, 0, 4],
                                                 [3, 2, 3, 8, 1, 2, 0, 0, 4]])
        self.assertEqual(counts, {((1, 2, 1, 8), "true"): 5, ((1, 2, 1, 8), "false"): 0,
                                  ((3, 2, 3, 8), "true"): 1, ((3, 2, 3, 8), "false"): 2})

    def test_of_constants_do_not_count(self):
        self.assertEqual(coverage_report.outcome_counts([[1, 2, 1, 8, 0, 0, 0, 0, 4]]), {})


class Constants(unittest.TestCase):
    def test_are_constexpr_functions_that_never_ran(self):
        source = "constexpr int f()\n{\n}\n\nint g()\n{\n}\nconstexpr int h() {\n}\n"
        with tempfile.TemporaryDirectory() as folder:
            file = str(pathlib.Path(folder) / "x.h")
            pathlib.Path(file).write_text(source)
            lines = coverage_report.constant_lines([
                {"filenames": [file], "count": count, "regions": [[first, 1, last, 2]]}
                for first, last, count in ((2, 3, 0), (6, 7, 0), (8, 9, 0), (8, 9, 1))])
            self.assertEqual(lines, {file: {2, 3}})


if __name__ == "__main__":
    unittest.main()
