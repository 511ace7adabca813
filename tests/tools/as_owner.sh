#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# as_owner.sh <command>...: runs the command without the rights of root to read and write what files
# deny; skipped where these cannot be given up.
set -eu
[ "$(id -u)" -eq 0 ] || exec "$@"
drop=(setpriv --bounding-set '-dac_override,-dac_read_search')
"${drop[@]}" true 2>/dev/null || { echo 'rights cannot be given up here'; exit 77; }
exec "${drop[@]}" "$@"
