# Sourced by the scripts.

# quietly COMMAND...: on a terminal the command's output is seen as it comes, with the progress of
# ninja and ctest in one line; elsewhere it is seen when the command fails.
quietly() {
    if [[ -t 1 ]]; then
        "$@"
        return
    fi
    local log result=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || result=$?
    [[ $result -eq 0 ]] || cat "$log" >&2
    rm "$log"
    return "$result"
}

# build PRESET: configures and builds in build/PRESET.
build() { cmake --preset "$1" >/dev/null && cmake --build --preset "$1"; }
