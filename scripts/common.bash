# What the scripts here share; sourced by them from the top folder.

say() { printf '\n== %s\n' "$*"; }
give_up() { printf '\n%s: %s\n' "${0##*/}" "$*" >&2; exit 1; }

# install_missing PACKAGE...: installs those Debian packages that are not there.
install_missing() {
    command -v dpkg-query >/dev/null || { echo "   no Debian packages here: taking what is on PATH"; return 0; }
    local missing=() as_root=() package log
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)" = installed ] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || { echo "   all there"; return 0; }
    echo "   installing: ${missing[*]}"
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || give_up "run as root, or install by hand: ${missing[*]}"
        as_root=(sudo)
    fi
    log=$(mktemp)
    { "${as_root[@]}" apt-get update && "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 ||
        { tail -20 "$log" >&2; give_up "the packages could not be installed ($log)"; }
    rm -f "$log"
}
