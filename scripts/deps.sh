# Sourced by the set-up scripts: makes sure the Debian packages given as arguments
# are installed, installing them when running as root, or says what to install.
zu_need_packages() {
  local missing=()
  local p
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -eq 0 ]; then
    echo "== installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -q && apt-get install -y -q "${missing[@]}" || return 1
  else
    echo "missing Debian packages: ${missing[*]}" >&2
    echo "install them with: sudo apt-get update && sudo apt-get install -y ${missing[*]}" >&2
    return 1
  fi
}

ZU_BUILD_PACKAGES=(cmake make g++ zlib1g-dev)
ZU_TEST_PACKAGES=(libgtest-dev libgmock-dev libbenchmark-dev locales)
ZU_TEST_PACKAGES+=(libxml2-dev libpugixml-dev libtinyxml2-dev)
ZU_TEST_PACKAGES+=(python3 python3-pyftpdlib gzip zip)
ZU_TEST_PACKAGES+=(libicu-dev)
ZU_TEST_PACKAGES+=(libboost-dev)
