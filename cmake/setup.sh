# Read by ./check and ./demo: installs what is missing, runs steps quietly, and says what failed.
# Expects: root, the top folder of the project.

logs="$root/build/logs"
mkdir -p "$logs"
jobs=$(nproc 2>/dev/null || echo 2)

# Compilations that were done before are not done again, where ccache happens to be installed. The folder of a build is
# part of what it compares, unless told otherwise; the precompiled header of the tests needs the sloppiness.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=1
    export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
fi

# What a thing that is needed is recognised by, and the Debian package that brings it. A name is a command, a path a
# file.
packageOf() {
    case $1 in
        cmake) echo cmake ;;
        ninja) echo ninja-build ;;
        g++) echo g++ ;;
        python3) echo python3 ;;
        pkg-config) echo pkgconf ;;
        nm) echo binutils ;;
        valgrind) echo valgrind ;;
        chromium) echo chromium ;;
        node) echo nodejs ;;
        npm) echo npm ;;
        clang++-19) echo clang-19 ;;
        clang-format-19) echo clang-format-19 ;;
        clang-tidy-19) echo clang-tidy-19 ;;
        x86_64-w64-mingw32-g++-posix) echo g++-mingw-w64-x86-64-posix ;;
        /usr/lib/wine/wine64) echo wine64 ;;
        /usr/src/googletest/googletest) echo googletest ;;
        llvm-cov-19) echo llvm-19 ;;
        /usr/lib/llvm-19/lib/clang/19/lib/linux) echo libclang-rt-19-dev ;;
        /usr/include/gtest/gtest.h) echo libgtest-dev ;;
        /usr/include/xxhash.h) echo libxxhash-dev ;;
        /usr/include/CLI/CLI.hpp) echo libcli11-dev ;;
        /usr/include/nlohmann/json.hpp) echo nlohmann-json3-dev ;;
        /usr/include/rapidcheck.h) echo librapidcheck-dev ;;
        /usr/share/iso-codes/json) echo iso-codes ;;
        help2man) echo help2man ;;
        tmux) echo tmux ;;
        /usr/share/i18n/locales/de_DE) echo locales ;;
        git) echo git ;;
        /usr/include/benchmark/benchmark.h) echo libbenchmark-dev ;;
        /usr/include/rapidjson/document.h) echo rapidjson-dev ;;
        /usr/include/pugixml.hpp) echo libpugixml-dev ;;
        /usr/include/google/protobuf/arena.h) echo libprotobuf-dev ;;
        protoc) echo protobuf-compiler ;;
        /usr/include/capnp/message.h) echo libcapnp-dev ;;
        capnp) echo capnproto ;;
        /usr/include/flatbuffers/flexbuffers.h) echo libflatbuffers-dev ;;
        /usr/lib/*/cmake/boost_json-1.81.0) echo libboost-json1.81-dev ;;
        /usr/share/unicode/UnicodeData.txt) echo unicode-data ;;
    esac
}

isThere() {
    case $1 in
        /*) [ -e "$1" ] ;;
        *) command -v "$1" >/dev/null ;;
    esac
}

# need THING...: installs those of the things that are missing. Returns 1, and says what to do, when it cannot.
need() {
    local thing missing=() packages=()
    for thing in "$@"; do
        if ! isThere "$thing"; then
            missing+=("$thing")
            packages+=("$(packageOf "$thing")")
        fi
    done
    [ ${#missing[@]} = 0 ] && return 0
    if ! command -v apt-get >/dev/null; then
        echo "This system has no apt-get, so nothing is installed here. Needed:"
        for thing in "$@"; do
            printf '  %-45s %s\n' "$thing" "$(isThere "$thing" && echo present || echo MISSING)"
        done
        echo "Please install what is missing, then call this again."
        return 1
    fi
    local as=()
    if [ "$(id -u)" != 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Packages are missing, and this user can neither install them nor call sudo. As root, please call"
            echo "  apt-get update && apt-get install --no-install-recommends ${packages[*]}"
            return 1
        fi
        as=(sudo)
    fi
    echo "installing ${packages[*]}"
    local install=("${as[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y install --no-install-recommends)
    if { "${as[@]}" apt-get -q update && "${install[@]}" "${packages[@]}"; } >"$logs/install-packages.log" 2>&1; then
        return 0
    fi
    tail -n 15 "$logs/install-packages.log"
    echo "FAILED: installing packages. The log is build/logs/install-packages.log."
    echo "What to do: see whether apt-get reaches its servers, or install by hand: ${packages[*]}"
    return 1
}

# step NAME ADVICE COMMAND...: runs a command with its output in build/logs/NAME.log. Returns 1, and shows the end of
# the log, when it fails.
step() {
    local name=$1 advice=$2
    shift 2
    "$@" >"$logs/$name.log" 2>&1 && return 0
    # Of a build the first errors say more than the last lines.
    case $name in
        *-build) grep -m 5 -E '(error|Error|FAILED):' "$logs/$name.log" || tail -n 15 "$logs/$name.log" ;;
        *) tail -n 15 "$logs/$name.log" ;;
    esac | cut -c 1-300
    echo "FAILED: $name. The log is build/logs/$name.log."
    echo "What to do: $advice"
    return 1
}

# unpack PACKAGE FILE: takes a package's files into build/<name> without installing it, for one that does not go with what is
# installed: FILE is one of them, as build/<name>/usr/include/...
unpack() {
    [ -e "$root/$2" ] && return 0
    local name=${2#build/}
    local folder=$root/build/${name%%/*}
    mkdir -p "$folder" &&
        step "unpack-$1" "see whether apt-get reaches its servers; as root, apt-get update brings its lists." \
            sh -c 'cd "$1" && apt-get -q download "$2" && dpkg-deb -x "$2"_*.deb .' sh "$folder" "$1"
}

# build PRESET [TARGET...]: configures where it has not been done, and builds.
build() {
    local preset=$1
    shift
    if [ ! -f "$root/build/$preset/build.ninja" ]; then
        step "$preset-configure" "read the log; rm -r build/$preset forgets an earlier configuration." \
            cmake --preset "$preset" || return 1
    fi
    step "$preset-build" "correct the first error in the log; ninja -C build/$preset builds again." \
        ninja -C "$root/build/$preset" -j "$jobs" "$@"
}
