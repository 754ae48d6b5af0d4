# shellcheck shell=bash disable=SC2154 # scripts/setup has set cache, log and scripts
# Says what happens, and runs what takes long within a time. Sourced by scripts/setup.
step='' advice='' running=''

say() { printf 'setup: %s\n' "$*" >&2; }

# begin STEP ADVICE: says what happens now; both serve the message, should it fail.
begin() {
    step=$1 advice=$2
    say "$step ..."
    printf '\n== %s\n' "$step" >>"$log"
}

fail() {
    say "FAILED: $step"
    say "the end of $log:"
    tail -n 15 "$log" >&2
    say "$advice"
    exit 1
}

# limited SECONDS COMMAND...: runs it within the time, and with its output in the log.
limited() {
    local seconds=$1 status=0
    shift
    # In the background, so that Ctrl-C is heard at once.
    timeout --kill-after=10 "$seconds" "$@" </dev/null >>"$log" 2>&1 &
    running=$!
    wait "$running" || status=$?
    running=''
    ((status != 124 && status != 137)) || printf 'gave up after %s seconds: %s\n' "$seconds" "$*" >>"$log"
    return "$status"
}

interrupted() {
    [[ -z $running ]] || kill "$running" || true
    say 'interrupted; what is done stays done'
    exit 130
}

one_at_a_time() {
    mkdir -p "$cache"
    exec {lock}>"$cache/setup.lock"
    flock --nonblock "$lock" && return
    say 'waiting for another checkout, which sets up the same folder ...'
    flock --wait 3600 "$lock" || {
        say "it did not end within an hour; see who holds $cache/setup.lock"
        exit 1
    }
}
