# SPDX-License-Identifier: MIT
"""run_cases.py <program> <library> <project> <module>.<class>: tries the program on the cases of one
class."""
import pathlib
import sys
import unittest

import workbench

workbench.program, workbench.library, project, cases = sys.argv[1:]
workbench.project = pathlib.Path(project)
unittest.main(module=None, argv=['cases', cases], verbosity=2)
