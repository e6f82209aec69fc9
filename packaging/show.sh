# shellcheck shell=bash disable=SC2034,SC2154  # the status is for the scripts; signals.sh has the job
# The show: where it plays, how it is ended, and what its log page says. Sourced by common.sh, and by
# the launcher of an installed Nimbrel.

show_folder=$PWD # where the demo works: it reads Data/ there and writes its page
page=Vell_log.html
status=0  # the demo's exit status, once it has played
ended_by= # the signal that ended it, if one did

# play_apart DATA: the show shall have a folder of its own in which Data/ is this folder, and its page
# goes to the user's state folder.
play_apart() {
    page=$(state_folder)/Vell_log.html
    make_scratch
    show_folder=$scratch/show
    mkdir "$show_folder"
    ln -s "$1" "$show_folder/Data"
    ln -s "$page" "$show_folder/Vell_log.html"
}

# state_folder: makes it, and prints its name; a temporary one where there can be none, or where an
# earlier page is somebody else's. A relative XDG_STATE_HOME counts for nothing, as freedesktop.org has it.
state_folder() {
    local folder=${HOME:-/nonexistent}/.local/state
    [[ ${XDG_STATE_HOME:-} != /* ]] || folder=$XDG_STATE_HOME
    folder+=/nimbrel
    if ! mkdir -p "$folder" 2>/dev/null || ! page_is_free "$folder"; then
        folder=$(mktemp -d)
    fi
    printf '%s' "$folder"
}

# page_is_free FOLDER: whether the demo can write its page there.
page_is_free() {
    [ -w "$1" ] && { [ ! -e "$1/Vell_log.html" ] || [ -w "$1/Vell_log.html" ]; }
}

# press_escape SIGNAL: to the demo a signal means nothing, so Escape is pressed in its window. If that
# does not help, or at the next signal, the demo ends without an end of its log page.
# shellcheck disable=SC2317  # called by a signal
press_escape() {
    on_signals :
    leave_terminal "$1"
    say "Ending the show in order. Once more ends it at once."
    ended_by=$1
    "$escape" "$job" || kill -KILL "$job" 2>/dev/null || true
}

# page_state: changes when the page is written.
page_state() {
    stat --format '%i %y %s' "$page" 2>/dev/null || true
}

# Whether the demo has written its page in this run: that of an earlier one tells nothing.
page_is_new() {
    [ "$(page_state)" != "$page_before" ]
}

# error_rows: the rows of the page that say ERROR, as "section file; section file".
error_rows() {
    awk '/width ="15%">/ { gsub(/<[^>]*>/, ""); section = $1 }
        /width ="5%">/ { status = $0; gsub(/<[^>]*>/, "", status); gsub(/ /, "", status) }
        /width ="80%">/ && status == "ERROR" { gsub(/<[^>]*>/, ""); sub(/^ */, "")
            printf "%s%s %s", sep, section, $0; sep = "; " }' "$page"
}

# The demo ended in order when its status is 0 and its page has a foot: at its end, or by Escape,
# which is no fault.
all_is_well() {
    [ "$status" -eq 0 ] && page_is_new && [ -z "$(error_rows)" ] && grep -q '^</html>' "$page"
}

# play_show ESCAPE DEMO [LIBRARY]: with the library under the demo; ESCAPE is the program that presses
# Escape in its window.
play_show() {
    local from
    local escape=$1
    local how=(exec)
    [ $# -lt 3 ] || how=(preloaded "$3")
    from=$(date +%s.%N)
    page_before=$(page_state)
    on_signals press_escape
    start_job inside "$show_folder" "${how[@]}" "$2"
    end_of_job || status=$?
    on_signals end_by
    awk -v from="$from" -v to="$(date +%s.%N)" -v status="$status" 'BEGIN {
        printf "Nimbrel ran for %.1f seconds%s.\n", to - from,
               status ? " and ended with exit status " status : "" }'
}

# tell_errors: what the page says of the show.
tell_errors() {
    local errors
    if page_is_new; then
        errors=$(error_rows)
        echo "$page: ${errors:+rows that say ERROR: }${errors:-no row says ERROR.}"
    else
        echo "$page: the demo wrote none."
    fi
}

# present ESCAPE DEMO [LIBRARY]: plays the show on the display at hand, or a virtual one, and says how it went.
# A show that a signal ended ends the script too.
present() {
    if start_display; then
        say "No display here: playing on a virtual one, without a window that you could see."
    fi
    play_show "$@"
    tell_errors
    [ -z "$ended_by" ] || exit "$(status_of "$ended_by")"
}
