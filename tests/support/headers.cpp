// SPDX-License-Identifier: MIT
// For tests/: nothing, as a target must have a source: its headers are compiled for all tests.
