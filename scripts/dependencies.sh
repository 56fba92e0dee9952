# Sourced by the other scripts: the packages that the project needs, and their installation.

# Needed for a command that reads files without compression: all that demo.sh installs.
command_packages=(
  g++ cmake ninja-build                # tools
  libboost1.81-dev libeigen3-dev libspdlog-dev  # the libraries
  libhwy-dev                           # the batch classifier and check sums
  libcli11-dev                         # the zone-detector command
)

packages=(
  "${command_packages[@]}"
  pkg-config libbz2-dev liblz4-dev libzstd-dev  # the compressions of recordings
  libcpp-httplib-dev                            # the server of the page
  libgtest-dev libmpfr-dev python3-jsonschema   # the tests
)

# Also needed for the Python module and its tests; test.sh installs them.
python_packages=(
  python3-dev pybind11-dev python3-numpy           # the module
  python3-pytest python3-hypothesis mypy           # its tests
  python3-matplotlib python3-pandas python3-shapely  # for its pictures, and to compare its answers
  python3-nbconvert python3-ipykernel              # notebooks, and their pages
  python3-dask python3-distributed python3-fsspec  # fleets of recordings, and their tests
)

# Also needed for the page and its tests: the compiler for browsers and a browser. Node 20 with npm must be installed.
web_packages=(emscripten chromium)

# Also needed for check.sh, coverage.sh and mutate.sh.
development_packages=(
  clang clang-format clang-tidy libclang-rt-dev  # the other compiler, its analysis, sanitizers and fuzzer
  gcovr python3
  libopen3d-dev                                     # writes files for the readers
)

# Installs the packages that are missing, if any.
install_missing_packages() {
  if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    if [ "${ORVANTIS_SKIP_PACKAGES:-}" = 1 ]; then
      return
    fi
    echo "This system has no apt. Install the content of these Debian packages, then set ORVANTIS_SKIP_PACKAGES=1 and run" \
      "the script again:" >&2
    printf '  %s\n' "${packages[@]}" >&2
    exit 1
  fi
  local missing=() package
  for package in "${packages[@]}"; do
    if ! dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed; then
      missing+=("$package")
    fi
  done
  if [ ${#missing[@]} -eq 0 ]; then
    return
  fi
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}" >&2
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}
