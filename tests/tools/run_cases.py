# SPDX-License-Identifier: MIT
"""run_cases.py <program> <library> <project> <module>.<class>: tries the program on the cases of one
class. The class counts as skipped where one of them cannot be tried."""
import pathlib
import sys
import unittest

import workbench

workbench.program, workbench.library, project, cases = sys.argv[1:]
workbench.project = pathlib.Path(project)
result = unittest.main(module=None, argv=['cases', cases], verbosity=2, exit=False).result
sys.exit(1 if not result.wasSuccessful() else 77 if result.skipped else 0)
