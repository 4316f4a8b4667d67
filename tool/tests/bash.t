  $ test -e /usr/share/bash-completion/bash_completion || exit 80
  $ cp "$EXAMPLES/harbour.zon" 'a file.zon' && cd "$EXAMPLES"
  $ complete_bash() {  # the words; the line has no blanks around a ':'
  >   bash --norc -c '. /usr/share/bash-completion/bash_completion; . "$COMPLETIONS/zon.bash"
  >     COMP_LINE=${1// : /:}; COMP_POINT=${#COMP_LINE}; COMP_WORDS=("${@:2}"); COMP_CWORD=$(($# - 2))
  >     compopt() { :; }; _zon; printf "%s\n" "${COMPREPLY[@]}"' - "$*" "$@"
  > }
  $ complete_bash zon co
  compare
  copy
  $ complete_bash zon he
  help
  $ complete_bash zon help co
  compare
  copy
  $ complete_bash zon get --re
  --resolved
  $ complete_bash zon files --m
  --missing
  $ complete_bash zon fmt --w
  --write
  $ complete_bash zon set harbour.zon --type f
  filename
  $ complete_bash zon set harbour.zon Quay : 2/Le
  2/Length
  $ complete_bash zon unset harbour.zon Run/Title Quay : 2/Le
  2/Length
  $ complete_bash zon list harbour.zon Run/In
  Run/Input:1
  Run/Input:2
  Run/Input:3
  Run/Input:4
  $ complete_bash zon get --type harbour.zon Quay : 2/Le
  2/Length
  $ complete_bash zon get harbour.zon Run/Title Quay : 1/Le
  1/Length
  $ cd "$CRAMTMP/bash.t" && complete_bash zon get 'a\ file.zon' SY
  SYSTEM/
  $ complete_bash zon list 'a\ file.zon' Run ''
  
  $ complete_bash zon get - ''
  
