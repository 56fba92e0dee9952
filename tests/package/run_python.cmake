# Runs a user's script against the installed module, which was moved, with an empty environment: as a script that names the
# folder, and in a virtual environment made over the prefix, where nothing need be named.
cmake_minimum_required(VERSION 3.22)
file(MAKE_DIRECTORY ${WORK})
file(WRITE ${WORK}/user.py "
import sys
sys.path[:0] = sys.argv[2:]
import orvantis_zones as oz
site = oz.load(sys.argv[1])
assert oz.__file__.startswith('${PREFIX}/'), oz.__file__
with open('/proc/self/maps') as maps:
    ours = {line.split()[-1] for line in maps if '/liborvantis_' in line}
assert len(ours) > 4 and all(path.startswith('${PREFIX}/') for path in ours), ours
assert site.count([(11.0, 7.0, 1.0)]).inside[0, 0] == 1
from orvantis_zones.batch import evaluate
recording = oz.Recording.from_arrays([(0.0, [(11.0, 7.0, 1.0)], None)], name='one')
for isolate in (False, True):
    batch = evaluate(site, [recording], isolate=isolate)
    assert batch.recordings['status'].tolist() == ['finished'] and batch.zones['peak_points'].max() == 1, batch.errors
")
execute_process(COMMAND env -i ${PYTHON} -B ${WORK}/user.py ${DOCUMENT} ${PREFIX}/${SITE_PACKAGES}
                WORKING_DIRECTORY ${WORK} COMMAND_ERROR_IS_FATAL ANY)
# The command line of batches, as docs/fleets.md has it.
file(WRITE ${WORK}/a.xyz "11 7 1\n")
execute_process(COMMAND env -i PYTHONPATH=${PREFIX}/${SITE_PACKAGES} ${PYTHON} -B -m orvantis_zones.batch ${DOCUMENT} a.xyz
                WORKING_DIRECTORY ${WORK} OUTPUT_VARIABLE events COMMAND_ERROR_IS_FATAL ANY)
if(NOT events MATCHES "\na.xyz,0,outputs,low low low,0,")
  message(FATAL_ERROR "${events}")
endif()
# A prefix that is an environment: its interpreter finds the module by itself.
file(WRITE ${PREFIX}/pyvenv.cfg "home = /usr/bin\ninclude-system-site-packages = true\n")
file(CREATE_LINK ${PYTHON} ${PREFIX}/${BINDIR}/python3 SYMBOLIC)
execute_process(COMMAND env -i ${PREFIX}/${BINDIR}/python3 -B ${WORK}/user.py ${DOCUMENT}
                WORKING_DIRECTORY ${WORK} COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE ${PREFIX}/pyvenv.cfg ${PREFIX}/${BINDIR}/python3)
