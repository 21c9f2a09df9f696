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

    printf '== This machine lacks: %s\n' "${missing[*]}"
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
        if ! command -v sudo >/dev/null || ! { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
            {
                printf 'It cannot be installed from here. As root:\n'
                printf '  apt-get update && apt-get install --no-install-recommends %s\n' "${missing[*]}"
                cost_of "${missing[@]}"
            } >&2
            exit 1
        fi
    fi
    echo '== Asking Debian which versions there are'
    "${as_root[@]}" apt-get update -q
    printf '== Installing them\n'
    cost_of "${missing[@]}"
    (
        # Debian's PostgreSQL makes a database of its own, which starts with the machine: not wanted here.
        # Whoever installs another one later gets it as usual.
        case " ${missing[*]} " in *' postgresql '*)
            quiet=/etc/postgresql-common/createcluster.d/amorvelle.conf
            trap '"${as_root[@]}" rm -f "$quiet"' EXIT
            "${as_root[@]}" mkdir -p "${quiet%/*}"
            echo 'create_main_cluster = false' | "${as_root[@]}" tee "$quiet" >/dev/null
            ;;
        esac
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
    )
}

# What apt says it takes to install these; nothing where it cannot tell. It changes nothing.
cost_of() { # packages
    LC_ALL=C apt-get install --print-uris --no-install-recommends "$@" 2>/dev/null | awk '
        / newly installed, / { count = $3 }
        /^Need to get / { sub("/.*", "", $5); download = $4 " " $5 }
        /^After this operation, .* used/ { disk = $4 " " $5 }
        END {
            if (download != "")
                printf "   With what they need, %s packages: %s to download, %s on the disk.\n", count, download, disk
        }'
}
