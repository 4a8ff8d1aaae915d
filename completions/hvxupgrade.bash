# bash completion for hvxupgrade

_hvxupgrade() {
  local cur prev verb="" word verbs="status check upgrade report merge diff sheet identifiers show clean help"
  cur=${COMP_WORDS[COMP_CWORD]}
  prev=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
      status | check | upgrade | report | merge | diff | sheet | identifiers | show | clean | help)
        verb=$word
        break
        ;;
    esac
  done

  case $prev in
    --list)
      mapfile -t COMPREPLY < <(compgen -W "pending current newer notLoaded broken" -- "$cur")
      return
      ;;
    --report-detail)
      mapfile -t COMPREPLY < <(compgen -W "full changes summary" -- "$cur")
      return
      ;;
    --again)
      mapfile -t COMPREPLY < <(compgen -W "failed incomplete all" -- "$cur")
      return
      ;;
    --format)
      mapfile -t COMPREPLY < <(compgen -W "text json csv html" -- "$cur")
      return
      ;;
    --units)
      mapfile -t COMPREPLY < <(compgen -W "si mm-t-s" -- "$cur")
      return
      ;;
    --progress)
      mapfile -t COMPREPLY < <(compgen -W "auto plain none" -- "$cur")
      return
      ;;
    --only | --until)
      _hvxupgrade_identifiers
      return
      ;;
    --timeout)
      mapfile -t COMPREPLY < <(compgen -W "10m 1h 0" -- "$cur")
      return
      ;;
    -o | --output | --report | --html | --trace | --library | --files-from)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$cur")
      return
      ;;
    --output-dir | --data | --plugins)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$cur")
      return
      ;;
    --jobs | -j | --memory | --shard | --include | --exclude | --backup | --limit-features | --limit-memory | --limit-unpacked | --language | --type | --id | --depth | --case | --step | --document)
      return
      ;;
  esac

  if [[ $cur == -* ]]; then
    local options="--help --library --plugins --no-default-library --data" documents=" --files-from --null --include --exclude"
    local many=" --jobs --memory --verbose --progress"
    case $verb in
      status) options+="$documents --list --check --json --verbose" ;;
      upgrade)
        options+=" --output --output-dir --in-place --backup --dry-run --force --only --until --report --html --trace"
        options+=" --language --timeout --limit-features --limit-memory --limit-unpacked --quiet --strict --accept-failures --retry --fail-on-drop --no-sheet"
        options+=" --keep-result --report-detail --again --shard$documents$many"
        ;;
      check) options+="$documents$many --all --json --html" ;;
      merge) options+=" --report --force" ;;
      report) options+=" --format --output --force --document" ;;
      clean) options+=" --dry-run --json" ;;
      sheet) options+=" --case --step --units --all --json --csv" ;;
      diff) options+=" --json --html" ;;
      identifiers) options+=" --json" ;;
      show) options+=" --attributes --type --id --depth --json" ;;
      help) ;;
      *) options+=" --version" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
  elif [[ -z $verb || $verb == help ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$verbs" -- "$cur")
  elif [[ $verb == identifiers ]]; then
    _hvxupgrade_identifiers
  elif [[ $verb == merge || $verb == report ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -X '!*.jsonl' -- "$cur"; compgen -d -- "$cur")
  elif [[ $verb == clean ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$cur")
  else
    compopt -o filenames 2>/dev/null # names with blanks are quoted, folders get their "/"
    mapfile -t COMPREPLY < <(compgen -f -X '!*.hvxdoc' -- "$cur"; compgen -f -X '!*.hvxdoc.gz' -- "$cur"; compgen -f -X '!*.hvxdoc.zst' -- "$cur"; compgen -d -- "$cur")
  fi
}

# The last of a comma-separated list of identifiers, as the program itself lists them.
_hvxupgrade_identifiers() {
  local done=""
  [[ $cur == *,* ]] && done=${cur%,*},
  local known
  known=$("${COMP_WORDS[0]}" identifiers 2>/dev/null | sed -n 's/^ *[0-9][0-9]*  *\([A-Za-z]*\).*/\1/p')
  mapfile -t COMPREPLY < <(compgen -P "$done" -W "$known" -- "${cur##*,}")
}

complete -F _hvxupgrade hvxupgrade
