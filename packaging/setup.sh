# shellcheck shell=bash disable=SC2034,SC2154 # used by those who source this, who also set "root"
# To be sourced. Brings what the project needs from the distribution (Debian 12 or a relative of it).

packages_build="g++ cmake ninja-build pkg-config ccache libwxgtk3.2-dev libgtk-3-dev libsqlite3-dev
                librsvg2-dev libcups2-dev fonts-liberation"
packages_display="xvfb openbox trayer xdotool imagemagick x11-utils x11-xserver-utils"
# xserver-xorg-video-dummy: a display whose screens come and go
packages_test="libgtest-dev dbus-daemon iproute2 sqlite3 cups-daemon cups-client poppler-utils xdg-utils
               shared-mime-info desktop-file-utils libfile-mimeinfo-perl xserver-xorg-core
               xserver-xorg-video-dummy"
packages_fuzz="clang-14 libclang-rt-14-dev llvm-14"
packages_bench="libbenchmark-dev iproute2 perl-base"
packages_check="clang-format shellcheck python3 git"
packages_package="debhelper dpkg-dev fakeroot lintian appstream desktop-file-utils"
packages_windows="g++-mingw-w64-i686-posix dpkg-dev googletest icoutils python3"
packages_windows_package="nsis zip imagemagick icoutils"
# The C library for 32-bit programs; packaging/windows/wine brings the rest of them.
packages_wine="libc6-i386 dpkg-dev cups-daemon cups-client"

say() { printf '== %s\n' "$*"; }

# Installs those of the named packages that are missing.
install_packages() {
    command -v dpkg-query >/dev/null || {
        say "This is no Debian system; these are expected to be here: $*"
        return 0
    }
    local package missing=() as_root=()
    local installed
    installed=" $(dpkg-query -W -f='${db:Status-Status}:${Package} ' "$@" 2>/dev/null) "
    for package in "$@"; do
        case $installed in *" installed:$package "*) ;; *) missing+=("$package") ;; esac
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    say "Installing: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            say "This needs root. Run as root: apt-get install ${missing[*]}"
            return 1
        }
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get update -qq || return 1
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null || return 1
}

# Sets apt_apart to the options with which apt-get keeps all that it knows in a folder, so that nothing of the system
# changes: apt_apart FOLDER TYPE [FILTER…], with TYPE deb or deb-src. Packages come from where the system's own come
# from, as far as the filters of apt-get indextargets let it.
apt_apart() {
    local folder=$1 type=$2
    shift 2
    mkdir -p "$folder/lists/partial" "$folder/cache/archives/partial" && : >"$folder/status" &&
        apt-get indextargets --format "$type \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" 'Created-By: Packages' \
            'Origin: Debian' "$@" | sort -u >"$folder/sources.list" || return 1
    apt_apart=(-o "Dir::Etc::sourcelist=$folder/sources.list" -o Dir::Etc::sourceparts=/dev/null
        -o "Dir::State::lists=$folder/lists" -o "Dir::State::status=$folder/status" -o "Dir::Cache=$folder/cache"
        -o APT::Sandbox::User=)
}

# Configures and builds: build PRESET [TARGET…]
build() {
    local preset=$1 target targets=()
    shift
    for target in "$@"; do targets+=(--target "$target"); done
    say "Building (preset $preset)"
    (cd "$root" && cmake --preset "$preset" >"$root/.configure.log" 2>&1) || {
        cat "$root/.configure.log"
        rm -f "$root/.configure.log"
        return 1
    }
    rm -f "$root/.configure.log"
    (cd "$root" && cmake --build --preset "$preset" -j "$(nproc)" "${targets[@]}")
}
