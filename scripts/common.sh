# What all scripts share; sourced, not run. It puts the caller into the top folder of the checkout.

TOP="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$TOP"

# A bare system has no locale but these; tools and Qt need one that knows UTF-8.
export LC_ALL="${LC_ALL:-C.UTF-8}"
# No screen is needed for anything here.
export QT_QPA_PLATFORM=offscreen
# Where there is a compiler cache, builds of the same sources (release, package, a fresh clone) share their objects.
export CCACHE_BASEDIR="$TOP"

JOBS="${JOBS:-$(nproc)}"

# What each script needs of the distribution's packages.
PACKAGES_BUILD=(g++ cmake ninja-build qtbase5-dev)
PACKAGES_QT6=(qt6-base-dev qt6-5compat-dev qt6-translations-l10n)
# dpkg-dev compares what the libraries export; the translations of Qt's own texts belong to the example.
PACKAGES_TEST=(libxml2-utils fonts-dejavu-core dpkg-dev qttranslations5-l10n)
PACKAGES_VALGRIND=(valgrind)
PACKAGES_TRANSLATE=(qttools5-dev-tools)
PACKAGES_LINT=(clang-format clang-tidy)
PACKAGES_DOCS=(doxygen)
PACKAGES_PACKAGE=(dpkg-dev file doxygen qhelpgenerator-qt5)
PACKAGES_INSTALL=(pkg-config lintian desktop-file-utils)
PACKAGES_BENCH=(libbenchmark-dev)
PACKAGES_PEERS=(libxml2-dev libxerces-c-dev)

# The version of the sources.
VERSION="$(sed -n 's/^project(Tagwright VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)"

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# step "What is being done" command [argument ...]: says what comes, and on failure what it was that failed.
step() {
    local what="$1"
    shift
    echo
    echo "=== $what"
    "$@" || fail "failed: $what"
}

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# need_packages package ...: installs those that are missing.
need_packages() {
    local missing=() package
    command -v dpkg-query >/dev/null || {
        echo "No dpkg here: taking for granted that these are installed: $*"
        return 0
    }
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ "${#missing[@]}" -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "please install as root: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    # Nobody may be there to answer a question.
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q </dev/null &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -q -y --no-install-recommends "${missing[@]}" </dev/null
}

# check_links document ...: each link of a document leads to a file.
check_links() {
    local document target bad=0
    for document in "$@"; do
        while read -r target; do
            [ -e "$(dirname "$document")/$target" ] || { echo "$document: there is no $target"; bad=1; }
        done < <(sed -e '/^ *```/,/^ *```/d' "$document" | grep -oE '\]\([^)#:]+[)#]' | sed -e 's/^](//' -e 's/[)#]$//')
    done
    return "$bad"
}

# build preset [target ...]
build() {
    local preset="$1"
    shift
    step "Configuring ($preset)" cmake --preset "$preset"
    step "Building ($preset)" cmake --build --preset "$preset" --parallel "$JOBS" ${1:+--target "$@"}
}
