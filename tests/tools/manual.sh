#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# manual.sh <groff> <page>: groff has no warning for the page, which says something.
set -eu
groff=$1 page=$2
warnings=$("$groff" -man -Tutf8 -ww -z "$page" 2>&1)
[ -z "$warnings" ] || { echo "$warnings"; exit 1; }
"$groff" -man -Tutf8 -P-c "$page" | sed "s|.\x08||g" | grep -q DESCRIPTION
