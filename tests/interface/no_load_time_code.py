# SPDX-License-Identifier: MIT
"""no_load_time_code.py <objdump> <object>...: no object of the library has a constructor that
would run at load: all globals start from static values."""
import subprocess
import sys

objdump, objects = sys.argv[1], sys.argv[2:]
bad = [name for name in objects
       if '.init_array' in subprocess.run([objdump, '-h', name], capture_output=True, text=True,
                                          check=True).stdout]
if bad or not objects:
    sys.exit('code that runs at load: ' + (' '.join(bad) or 'no object was given'))
print(f'{len(objects)} objects, none runs code at load')
