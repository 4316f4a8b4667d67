" Indentation of parameter files: one step for each section around a line, one more for values that
" continue the line before. Uses the groups of the syntax file.
if exists('b:did_indent') | finish | endif
let b:did_indent = 1
setlocal indentexpr=ZonIndent(v:lnum) indentkeys=!^F,o,O,0[,0=~endsect
let b:undo_indent = 'setlocal indentexpr< indentkeys<'
if exists('*ZonIndent') | finish | endif

function s:IsText() abort
  return synIDattr(synID(line('.'), col('.'), 1), 'name') !~# '^zon\%(Punctuation\|EndSect\)$'
endfunction

" Whether the line begins inside a string, a remark or a comment, whose blanks must not change.
function s:BeginsInText(line) abort
  let last = prevnonblank(a:line - 1)
  let groups = map(synstack(last, col([last, '$']) - 1), 'synIDattr(v:val, "name")')
  return index(['zonString', 'zonRemark', 'zonBlock'], get(groups, 0, '')) >= 0
endfunction

function ZonIndent(line) abort
  if s:BeginsInText(a:line) | return -1 | endif
  call cursor(a:line, 1)
  let header = searchpair('\[', '', '\c\<endsect\>', 'bnW', 's:IsText()')
  if header == 0 | return 0 | endif
  let text = getline(a:line)
  let steps = text =~? '^\s*endsect\>' ? 0 : text =~? '^\s*\%([-+,=''|#%{.0-9]\|true\>\|false\>\)' ? 2 : 1
  return indent(header) + steps * shiftwidth()
endfunction
