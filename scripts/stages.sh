# For scripts that do one thing after another: `stage NAME COMMAND...` runs a command, and when the
# script ends, well or not, it says how long each took.
stage_lines=()
stage_name=

stage() {
    local begin=$SECONDS
    stage_name=$1
    stage_begin=$begin
    shift
    "$@"
    stage_lines+=("$(printf '%-24s %5d s' "$stage_name" $((SECONDS - begin)))")
    stage_name=
}

say_stages() {
    [ -z "$stage_name" ] ||
        stage_lines+=("$(printf '%-24s %5d s  (stopped here)' "$stage_name" $((SECONDS - stage_begin)))")
    printf '\n== %s\n' "$0"
    printf '%s\n' "${stage_lines[@]}"
    printf '%-24s %5d s\n' "all" "$SECONDS"
}
trap say_stages EXIT
