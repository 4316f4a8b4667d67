# Completion of the command zon for bash; needs the package bash-completion.
_zon() {
  local cur prev words cword
  _init_completion -n : || return

  local commands='check validate get list dump from-json compare diff merge copy files template new doc fmt set unset add rename tokens results help'
  local options='--color --help' command= word
  local -a given=()  # the words after the subcommand, without options
  for word in "${words[@]:1:cword-1}"; do
    if [[ -z $command ]]; then
      [[ " $commands " == *" $word "* ]] && command=$word
    elif [[ $word != -?* ]]; then
      given+=("$word")
    fi
  done
  case $prev in
    --color)
      mapfile -t COMPREPLY < <(compgen -W 'auto always never' -- "$cur")
      return ;;
    --format)
      mapfile -t COMPREPLY < <(compgen -W 'text json sarif' -- "$cur")
      return ;;
    --default | --key | --tolerance | --absolute)
      return ;;
    --type)
      # Of get it is a flag.
      if [[ $command == add ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'string filename' -- "$cur")
        return
      elif [[ $command == set ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'string filename text' -- "$cur")
        return
      fi ;;
    --copy-to)
      _filedir -d
      return ;;
    -t | --template | -f | -o | --output)
      _filedir
      return ;;
    --changes)
      # Of diff it is a flag.
      [[ $command == diff ]] || { _filedir; return; } ;;
  esac
  case $command in
    '') options+=" --version $commands" ;;
    check) options+=' --format --strict' ;;
    validate) options+=' --template --format' ;;
    get) options+=' --type --resolved --default' ;;
    list) options+=' --values --recursive --places' ;;
    dump) options+=' --json --places' ;;
    diff) options+=' --key --tolerance --absolute --json --changes' ;;
    merge) options+=' --output --dry-run --backup' ;;
    compare | new | doc) options+=' --template' ;;
    files) options+=' --missing --json --copy-to' ;;
    fmt) options+=' --check --diff --write --plain' ;;
    set) options+=' --changes --type --dry-run --backup --and' ;;
    add) options+=' --type --dry-run --backup' ;;
    unset | rename) options+=' --dry-run --backup' ;;
  esac
  if [[ $cur == -* || -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
  elif [[ $command == help ]]; then
    [[ ${#given[@]} -gt 0 ]] || mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$cur")
  elif [[ $command =~ ^(get|unset)$ && ${#given[@]} -gt 0 || $command =~ ^(list|add|rename)$ && ${#given[@]} -eq 1 ||
          $command == set && ${#given[@]} -gt 0 && ($prev == --and || ${#given[@]} -eq 1) &&
          " ${words[*]} " != *' -f '* && " ${words[*]} " != *' --changes '* ]]; then
    # The content of the section that has been typed so far.
    local section= file
    file=$(dequote "${given[0]}" 2>/dev/null)
    [[ $cur == */* ]] && section=${cur%/*}
    mapfile -t COMPREPLY < <(compgen -W "$(zon list "$file" $section 2>/dev/null </dev/null)" -- "$cur")
    compopt -o nospace
    __ltrim_colon_completions "$cur"
  elif [[ ${#given[@]} -gt 1 && $command == list ]]; then
    return
  else
    _filedir
  fi
}
complete -F _zon zon
