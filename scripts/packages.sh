# Sourced by run, test and .ci/run: installs what packages.txt asks for and the machine lacks.
# Usage: install_packages GROUP...

install_packages() {
    local group name command wanted=() missing
    while read -r group name command; do
        # A program that is there need not come from the package.
        [ -n "$command" ] && command -v "$command" >/dev/null && continue
        case " $* " in *" $group "*) wanted+=("$name") ;; esac
    done < <(grep -v '^#' "$root/packages.txt")
    mapfile -t missing < <(printf '%s\n' "${wanted[@]}" | sort \
        | comm -23 - <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null \
            | sed -n 's/^installed //p' | sort -u))
    [ ${#missing[@]} -eq 0 ] && return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
        if ! command -v sudo >/dev/null || ! { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
            printf 'These packages are missing and cannot be installed from here:\n  %s\n' "${missing[*]}" >&2
            printf 'As root: apt-get install --no-install-recommends %s\n' "${missing[*]}" >&2
            exit 1
        fi
    fi
    printf '== Installing %s\n' "${missing[*]}"
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}
