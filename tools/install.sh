# shellcheck shell=bash
# Read by vexa: what the system must have.

# packages_of GROUP...: their names.
packages_of() {
  awk -v groups=" $* " '
    /^[a-z]+:/ {
      name = $1; sub(/:$/, "", name)
      if (index(groups, " " name " ")) for (i = 2; i <= NF; ++i) print $i
    }' tools/packages.txt | sort -u
}

# missing_packages NAME...: those that are not installed.
missing_packages() {
  comm -23 <(printf '%s\n' "$@" | sort -u) \
    <(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null |
      awk '$2 == "installed" { print $1 }' | sort -u)
}

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"
  elif [ -t 0 ]; then sudo "$@"
  else sudo -n "$@"; fi
}

apt() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600 "$@" \
    >>build/log/install.log 2>&1 </dev/null
}

# need GROUP...: installs what is missing of these groups; asks nothing of apt when all is there.
need() {
  local missing
  if ! command -v dpkg-query >/dev/null; then
    say "this is no Debian system: install what tools/packages.txt names under '$*' by hand"
    return
  fi
  # shellcheck disable=SC2046
  missing=$(missing_packages $(packages_of "$@") | tr '\n' ' ')
  [ -n "${missing% }" ] || return 0
  if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
    fail "packages are missing and only root can install them: $missing"
  fi
  say "installing $missing"
  mkdir -p build/log
  # shellcheck disable=SC2086
  if ! { known_to_apt $missing && apt install -y --no-install-recommends $missing; } &&
     ! { apt update && apt install -y --no-install-recommends $missing; }; then
    tail -n 15 build/log/install.log >&2
    fail "these packages could not be installed: $missing"
  fi
}

# Whether the package lists name a candidate for each; a new system has no lists at all.
known_to_apt() {
  local package
  for package; do
    apt-cache policy "$package" 2>/dev/null | grep -q 'Candidate: [^(]' || return 1
  done
}
