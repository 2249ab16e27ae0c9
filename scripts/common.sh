# Shared by the scripts: where the project is, what is said, what is installed.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '== %s\n' "$*"; }

# install_packages [PACKAGE...]: the Debian packages of packages.txt, and those
# named, that this machine lacks; through apt, as root or with sudo.
install_packages() {
  local wanted missing=() package
  mapfile -t wanted < <(grep -v '^#' "$root/scripts/packages.txt")
  wanted+=("$@")
  for package in "${wanted[@]}"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  if [ ${#missing[@]} -eq 0 ]; then
    say "packages: all ${#wanted[@]} are installed"
    return
  fi
  local sudo=()
  [ "$(id -u)" -eq 0 ] || sudo=(sudo)
  say "packages: installing ${missing[*]}"
  "${sudo[@]}" apt-get update -qq
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
}

# configure_and_build PRESET [TARGET...]
configure_and_build() {
  local preset=$1
  shift
  say "configure: preset $preset"
  (cd "$root" && cmake --preset "$preset" >/dev/null)
  say "build: ${*:-everything} (this takes some minutes the first time)"
  (cd "$root" && cmake --build --preset "$preset" ${1:+--target "$@"})
}
