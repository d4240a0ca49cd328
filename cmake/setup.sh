# Sourced by ./run and ./test: installs what is missing and configures a build tree. Needs bash.
say() { printf '\033[2m[kel] %s\033[0m\n' "$*" >&2; }
die() { printf 'kel: %s\n' "$*" >&2; exit 1; }

# ensure_packages FILE...: the Debian packages named in the files, installed only where they are missing.
ensure_packages() {
  command -v dpkg-query >/dev/null || die "this set-up installs Debian packages; on another system install the ones named in cmake/packages.txt"
  local wanted missing=()
  wanted=$(cat "$@")
  local have # dpkg-query fails when it does not know one of them
  have=$({ dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' $wanted 2>/dev/null || true; } | awk '$1 == "ii" { print $2 }')
  for p in $wanted; do
    grep -qxF -- "$p" <<<"$have" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || die "these Debian packages are missing, and neither root nor sudo is here to install them: ${missing[*]}"
    root=(sudo)
  fi
  say "installing: ${missing[*]}"
  "${root[@]}" apt-get update -qq >&2 || say "apt-get update failed, going on with the lists that are here"
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2 ||
    die "could not install: ${missing[*]}"
}

# configure PRESET [cmake options]: configures a build tree that is not there yet or has other options.
configure() {
  local dir=build/$1
  [ -f "$dir/build.ninja" ] && grep -qxF "${2:-}" "$dir/configured-with" 2>/dev/null && return
  say "configuring $dir"
  cmake --preset "$@" >build/configure.log 2>&1 || { cat build/configure.log >&2; die "configuring failed"; }
  printf '%s\n' "${2:-}" >"$dir/configured-with"
}

# build PRESET TARGET...: quiet when there is nothing to do.
build() {
  local dir=build/$1
  shift
  [ -d "$dir/bin" ] || say "building $dir (the first time takes some minutes)"
  ninja -C "$dir" -j "${KEL_JOBS:-$(nproc)}" "$@" | { grep -vE 'Entering directory|Re-checking globbed|no work to do' || true; } >&2 ||
    die "the build failed"
}
