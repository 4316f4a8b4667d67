# Completion of the command zon for bash; needs the package bash-completion.
_zon() {
  local cur prev words cword
  _init_completion -n : || return

  local commands='check get list dump compare copy fmt tokens results'
  local options='--color --help' command= file= word
  for word in "${words[@]:1:cword-1}"; do
    if [[ -z $command ]]; then
      [[ " $commands " == *" $word "* ]] && command=$word
    elif [[ -z $file && $word != -* ]]; then
      file=$word
    fi
  done
  case $prev in
    --color)
      mapfile -t COMPREPLY < <(compgen -W 'auto always never' -- "$cur")
      return ;;
    -t | --template)
      _filedir
      return ;;
  esac
  case $command in
    '') options+=" --version $commands" ;;
    get) options+=' --type --resolved' ;;
    list) options+=' --values --recursive' ;;
    dump) options+=' --json' ;;
    compare) options+=' --template' ;;
  esac
  if [[ $cur == -* || -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
  elif [[ -n $file && $command == @(get|list) ]]; then
    # What lies in the section that has been typed so far.
    local section=
    [[ $cur == */* ]] && section=${cur%/*}
    mapfile -t COMPREPLY < <(compgen -W "$(zon list "$file" $section 2>/dev/null)" -- "$cur")
    compopt -o nospace
    __ltrim_colon_completions "$cur"
  else
    _filedir
  fi
}
complete -F _zon zon
