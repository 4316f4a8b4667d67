  $ command -v zsh >/dev/null || exit 80
  $ cd "$EXAMPLES"

Typed into a pseudo-terminal, with a tab at the end:

  $ cat > "$CRAMTMP/type.zsh" <<'E'
  > zmodload zsh/zpty
  > zpty shell zsh -f
  > zpty -w shell "PS1=; fpath=($COMPLETIONS \$fpath); autoload -U compinit; compinit -u -d $CRAMTMP/dump"
  > zpty -w shell "zle_highlight=(none); print READY"
  > zpty -r shell text '*READY*READY*'
  > zpty -n -w shell "$1"$'\t'
  > zpty -r shell text "*$2*" && print -r -- "$2"
  > E
  $ for typed in 'zon get harbour.zon Quay:2/Le' 'zon get --type harbour.zon Quay:2/Le' 'zon set harbour.zon Quay:2/Le'; do
  >   timeout 20 zsh -f "$CRAMTMP/type.zsh" "$typed" Quay:2/Length
  > done
  Quay:2/Length
  Quay:2/Length
  Quay:2/Length
  $ timeout 20 zsh -f "$CRAMTMP/type.zsh" 'zon help tok' 'zon help tokens'
  zon help tokens
