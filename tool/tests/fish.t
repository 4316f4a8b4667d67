  $ command -v fish >/dev/null || exit 80
  $ cd "$EXAMPLES"
  $ complete_fish() { HOME=$CRAMTMP fish -c 'source "$COMPLETIONS/zon.fish"; complete -C "'"$1"'"' 2>/dev/null; }
  $ complete_fish 'zon co'
  compare
  copy
  $ complete_fish 'zon he'
  help
  $ complete_fish 'zon help co'
  compare
  copy
  $ complete_fish 'zon get harbour.zon Quay:2/Le'
  Quay:2/Length
  $ complete_fish 'zon --color always get --type harbour.zon Quay:2/Le'
  Quay:2/Length
  $ complete_fish 'zon set --backup harbour.zon Quay:2/Le'
  Quay:2/Length
  $ complete_fish 'zon get - Q'
