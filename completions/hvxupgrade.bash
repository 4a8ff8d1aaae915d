# bash completion for hvxupgrade

_hvxupgrade() {
  local cur prev verb word
  cur=${COMP_WORDS[COMP_CWORD]}
  prev=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
      status | check | upgrade | diff | identifiers | show | clean)
        verb=$word
        break
        ;;
    esac
  done

  case $prev in
    --only | --until)
      _hvxupgrade_identifiers
      return
      ;;
    -o | --output | --report | --trace | --library)
      mapfile -t COMPREPLY < <(compgen -f -- "$cur")
      return
      ;;
    --output-dir | --data)
      mapfile -t COMPREPLY < <(compgen -d -- "$cur")
      return
      ;;
    --backup | --timeout | --limit-features | --limit-memory | --language | --type | --id | --depth)
      return
      ;;
  esac

  if [[ $cur == -* ]]; then
    local options="--help --library --data"
    case $verb in
      status) options+=" --check --json" ;;
      upgrade)
        options+=" --output --output-dir --in-place --backup --dry-run --force --only --until --report --trace"
        options+=" --language --timeout --limit-features --limit-memory --quiet --strict --accept-failures --retry --fail-on-drop"
        options+=" --keep-result"
        ;;
      check) options+=" --all --json" ;;
      clean) options+=" --dry-run --json" ;;
      diff | identifiers) options+=" --json" ;;
      show) options+=" --attributes --type --id --depth" ;;
      *) options+=" --version" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
  elif [[ -z $verb ]]; then
    mapfile -t COMPREPLY < <(compgen -W "status check upgrade diff identifiers show clean" -- "$cur")
  elif [[ $verb == identifiers ]]; then
    _hvxupgrade_identifiers
  elif [[ $verb == clean ]]; then
    mapfile -t COMPREPLY < <(compgen -d -- "$cur")
  else
    mapfile -t COMPREPLY < <(compgen -f -X '!*.hvxdoc' -- "$cur"; compgen -d -S / -- "$cur")
    compopt -o nospace 2>/dev/null
    [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} != */ ]] && compopt +o nospace 2>/dev/null
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
