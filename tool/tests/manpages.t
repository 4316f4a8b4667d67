  $ command -v man >/dev/null || exit 80
  $ for page in "$EXAMPLES"/../docs/man/*; do
  >   MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null
  > done
