#!/usr/bin/env bash
# Builds a wheel of the Python module that carries its libraries, into build/wheel/dist, and tries it in a new virtual
# environment. The wheel is for this system's Python and C library.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

packages+=("${python_packages[@]}" python3-build python3-setuptools python3-venv python3-wheel)
install_missing_packages

build=build/wheel
package=$build/source/orvantis_zones
python=/usr/bin/python3
# The libraries lie in the package, where the module looks for them.
cmake -S . -B $build -G Ninja -DCMAKE_BUILD_TYPE=Release -DORVANTIS_BUILD_PYTHON=ON -DORVANTIS_BUILD_TESTS=OFF \
  -DCMAKE_BUILD_WITH_INSTALL_RPATH=ON -DORVANTIS_PYTHON_INSTALL_DIR:STRING=python -DCMAKE_INSTALL_LIBDIR=python/orvantis_zones/lib \
  -DPython3_EXECUTABLE=$python >/dev/null
cmake --build $build --target orvantis_python

rm -rf $build/source $build/dist $build/environment
mkdir -p $package/lib
cp -r $build/python/orvantis_zones/. $package
module=$(echo $package/_core.*.so)
# What every Linux system has stays there: another C library than the system's own would not work.
find . -path "./$build/*" -name 'liborvantis_*.so.*' -printf '%h\n' | sort -u | paste -sd: >$build/folders
LD_LIBRARY_PATH=$(cat $build/folders) ldd "$module" | while read -r name arrow path _; do
  case $name in
    libc.so.* | libm.so.* | libgcc_s.so.* | libstdc++.so.* | linux-vdso.so.* | /lib*) continue ;;
  esac
  if [ "$arrow" = '=>' ]; then
    cp -L "$path" "$package/lib/$name"
  fi
done

version=$(sed -n 's/^project(orvantis_zone_detector VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
cat >$build/source/setup.py <<PYTHON
from setuptools import setup

# It has a compiled part, which was not compiled by setuptools.
setup(name="orvantis-zones", version="$version", packages=["orvantis_zones", "orvantis_zones.batch"],
      package_data={"orvantis_zones": ["*", "lib/*"]},
      description="Zones and counter lines on LiDAR points", python_requires=">=3.9", install_requires=["numpy"],
      has_ext_modules=lambda: True)
PYTHON
(cd $build/source && $python -m build --wheel --no-isolation --outdir ../dist . >/dev/null)

# numpy is the system's; everything else is new.
$python -m venv --system-site-packages $build/environment
$build/environment/bin/pip install --quiet --no-index --no-deps $build/dist/*.whl
(cd / && env -i "$OLDPWD/$build/environment/bin/python" - "$OLDPWD" <<'PYTHON'
import sys
import orvantis_zones as oz
from orvantis_zones.batch import evaluate

site = oz.load(sys.argv[1] + "/examples/crossing/crossing.json")
assert "environment" in oz.__file__, oz.__file__
with open("/proc/self/maps") as maps:
    ours = {line.split()[-1] for line in maps if "orvantis" in line and ".so" in line}
assert ours and all("environment" in path for path in ours), ours
recording = oz.Recording.from_arrays([(0.0, [(11.0, 7.0, 1.0)], None)], name="one")
for isolate in (False, True):
    batch = evaluate(site, [recording], isolate=isolate)
    assert batch.recordings["status"].tolist() == ["finished"] and batch.zones["peak_points"].max() == 1, batch.errors
print(f"{oz.__version__} works in a new environment, with {len(ours)} libraries of its own")
PYTHON
)
ls $build/dist/*.whl
