#!/usr/bin/env bash
# Fails when the build included a system header from a Debian package that
# scripts/install-dependencies.sh neither names nor pulls in through the packages it names. A
# package installed by hand on one machine would otherwise hide a missing install step until the
# build breaks on the next, new machine.
#
#   bash scripts/check-install-list.sh BUILD_FOLDER...
#
# Each folder must be a Ninja build that has been built: Ninja's dependency log lists every header
# each object was compiled from, the ones included through other headers too.
set -euo pipefail
cd "$(dirname "$0")/.."

[ $# -gt 0 ] || { echo "usage: check-install-list.sh BUILD_FOLDER..." >&2; exit 2; }

# The packages the installer names: the words of its packages=( … ) list, comments left out.
mapfile -t named < <(awk '/^packages=\(/{on=1; next} on && /^\)/{on=0} on {sub(/#.*/, ""); print}' \
  scripts/install-dependencies.sh | tr -s ' \t' '\n' | grep -v '^$' | sort -u)
[ ${#named[@]} -gt 0 ] || { echo "check-install-list.sh: no package list in scripts/install-dependencies.sh" >&2; exit 2; }

# Everything installing those packages brings along: their hard dependencies, followed all the way.
closure=$(mktemp)
headers=$(mktemp)
owners=$(mktemp)
trap 'rm -f "$closure" "$headers" "$owners"' EXIT
apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces \
    --no-enhances "${named[@]}" 2>/dev/null |
  sed -nE 's/^ *\|?(PreDepends|Depends): <?([^ >:]+).*/\2/p; s/^([a-z0-9][^ :]*)$/\1/p' |
  sort -u >"$closure"

# The system headers the build read, as the compiler named them, with "dir/../" folded away.
for build in "$@"; do
  [ -f "$build/.ninja_deps" ] || { echo "check-install-list.sh: $build is not a Ninja build that has been built" >&2; exit 2; }
  ninja -C "$build" -t deps
done | awk '/^    \/usr\// {print $1}' | sort -u | xargs -r realpath -sm | sort -u >"$headers"
count=$(wc -l <"$headers")
[ "$count" -gt 0 ] || { echo "check-install-list.sh: the builds read no system header; were they built?" >&2; exit 2; }

# Which package installed each header (files no package owns, such as alternatives, are passed
# over). dpkg answers "package[:arch][, package…]: path" a line; the first owner is enough.
xargs -r dpkg -S <"$headers" 2>/dev/null |
  awk '{split($0, parts, ": /"); owner = parts[1]; sub(/[,:].*/, "", owner); print owner " /" parts[2]}' >"$owners" || true

missing=$(awk 'NR == FNR {known[$1] = 1; next} !($1 in known) {print $1 " (" $2 ")"}' "$closure" "$owners" |
  sort -u -k1,1)
if [ -n "$missing" ]; then
  echo "check-install-list.sh: the build includes headers from packages that scripts/install-dependencies.sh never installs:" >&2
  printf '  %s\n' "$missing" >&2
  echo "Add each package to the installer's list: this machine has it only because it was installed by hand." >&2
  exit 1
fi
echo "check-install-list.sh: the $count system headers the build read all come from packages the installer installs"
