# The commands that test an application: voice scripts and the lint. Sourced by ../corvis.

test_app_usage() {
  cat <<'EOF'
Usage: corvis test-app [OPTIONS] URL|FILE|FOLDER SCRIPT...

Runs the application without a window and the voice scripts against it. docs/voice-scripts.md tells how scripts are
written. Without another option the results are printed as TAP 14.

Output
  --json               one JSON event a line instead; nothing else on standard output
  --tap                TAP 14 (the default)
  --narrate            a table for people instead
  --junit FILE         a JUnit report, too
  --screenshots DIR    pictures of the page at failures (default: beside the JUnit report)
  --coverage           which of the actions that the page registered were spoken
  --coverage-min N     fail when less than N percent of them were
  --console KIND       the page's console on standard error: none (default), page, all

Limits
  --timeout MS         for each step (default 5000); the page has four times as long to load and call listen()
  --total-timeout S    for the whole run (default 600)

The application
  --app-id ID          its id (default com.example.app)
  --privilege NAME     grant this one only: microphone, voicecontrol or a URI; repeatable (default: both)
  --no-privileges      grant none
  --size WIDTHxHEIGHT  the page's size in pixels (default 1920x1080)
  --window             show it in a window

Exit status: 0 every expectation held; 1 one failed; 2 wrong usage, or a script has errors (nothing was started);
3 the application can't be loaded, or never listened; 4 its page keeps crashing; 6 no bus or display; 7 less
coverage than --coverage-min; 8 the time for the whole run was over; 130 interrupted.
EOF
}

items_usage() {
  cat <<'EOF'
Usage: corvis items [OPTIONS] URL|FILE|FOLDER

Loads the page and prints what can be selected on it by voice: the numbers, titles and places of its items.

Options
  --png FILE           save a picture of the page with each item's box and number on it
  --json               the page's answer as it is; nothing else on standard output
  --timeout MS         for each answer of the page (default 5000)
  --app-id ID, --privilege NAME, --no-privileges, --size WIDTHxHEIGHT, --window, --console KIND
                       as for corvis test-app

Exit status: 0 printed; 1 the page answered with no items, or no picture could be made; 2 wrong usage; 3 the page
can't be loaded, or never listened; 4 it keeps crashing; 6 no bus or display.
EOF
}

lint_usage() {
  cat <<'EOF'
Usage: corvis lint [OPTIONS] URL|FILE|FOLDER

Loads the page and reports what would make voice fail on it.

Options
  --call               call each of the page's callbacks as well (they act on the page) and report those that fail
  --json               one JSON object a line; nothing else on standard output
  --timeout MS         for each answer of the page (default 5000)
  --app-id ID, --privilege NAME, --no-privileges, --size WIDTHxHEIGHT, --window, --console KIND
                       as for corvis test-app

Exit status: 0 nothing found; 1 something found; 2 wrong usage; 3 the page can't be loaded; 4 it keeps crashing;
6 no bus or display.
EOF
}

# Sorts the arguments of a command into `stage_options`, `voice_options` and `operands`. The first argument names
# the command, the second and third its own options with a value and without.
sort_arguments() {
  local name=$1 valued=" $2 " flags=" $3 "
  shift 3
  stage_options=(--headless) voice_options=() operands=()
  local console=none privileges=(microphone voicecontrol) granted=()
  while [ $# -gt 0 ]; do
    case $1 in
      --app-id | --size | --console | --privilege | --timeout)
        [ $# -ge 2 ] || fail "$1 needs a value; see corvis $name --help." 2 ;;&
      --app-id | --size) stage_options+=("$1" "$2"); shift ;;
      --console) console=$2; shift ;;
      --privilege) granted+=("$2"); shift ;;
      --timeout) voice_options+=("$1" "$2"); shift ;;
      --no-privileges) stage_options+=("$1"); privileges=() ;;
      --headless | --window) stage_options+=("$1") ;;
      -*)
        if [[ $valued == *" $1 "* ]]; then
          [ $# -ge 2 ] || fail "$1 needs a value; see corvis $name --help." 2
          voice_options+=("$1" "$2"); shift
        elif [[ $flags == *" $1 "* ]]; then
          voice_options+=("$1")
        else
          fail "$name does not know $1; see corvis $name --help." 2
        fi ;;
      *) operands+=("$1") ;;
    esac
    shift
  done
  stage_options+=(--console "$console")
  [ ${#granted[@]} = 0 ] || privileges=("${granted[@]}")
  local privilege
  for privilege in "${granted[@]}"; do stage_options+=(--privilege "$privilege"); done
  for privilege in "${privileges[@]}"; do voice_options+=(--privilege "$privilege"); done
}

test_app() {
  local argument stage_options voice_options operands
  for argument in "$@"; do
    case $argument in -h | --help) test_app_usage; return ;; esac
  done
  sort_arguments test-app "--junit --screenshots --coverage-min --total-timeout" "--json --narrate --tap --coverage" \
    "$@"
  [ ${#operands[@]} -ge 2 ] || fail "test-app needs an application and a script; see corvis test-app --help." 2
  local script
  for script in "${operands[@]:1}"; do voice_options+=(--script "$script"); done
  prepare_kit
  "$kit_bin/corvis-voice" --tap "${voice_options[@]}" --check || exit 2
  stage_run "${stage_options[@]}" --app "${operands[0]}" -- --tap "${voice_options[@]}"
}

# A look at one page: look NAME "OPTIONS WITH A VALUE" "OTHER OPTIONS" ARGUMENTS...
look() {
  local name=$1 valued=$2 flags=$3 argument stage_options voice_options operands
  shift 3
  for argument in "$@"; do
    case $argument in -h | --help) "${name}_usage"; return ;; esac
  done
  sort_arguments "$name" "$valued" "$flags" "$@"
  [ ${#operands[@]} = 1 ] || fail "$name needs one URL, HTML file or folder; see corvis $name --help." 2
  prepare_kit
  stage_run "${stage_options[@]}" --app "${operands[0]}" -- "--$name" "${voice_options[@]}"
}

items() { look items --png --json "$@"; }

lint() { look lint "" "--json --call" "$@"; }
