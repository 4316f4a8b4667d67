" Settings for parameter files.
if exists('b:did_ftplugin') | finish | endif
let b:did_ftplugin = 1

setlocal comments=s1:/*,mb:*,ex:*/,://,:; commentstring=//\ %s
setlocal expandtab shiftwidth=3 softtabstop=3
let b:undo_ftplugin = 'setlocal comments< commentstring< expandtab< shiftwidth< softtabstop<'

" For matchit: % jumps between the header and the EndSect of a section.
let b:match_ignorecase = 1
let b:match_words = '\[\s*\a[^]]*]:\<EndSect\>'
let b:match_skip = 's:zon\%(Line\|Block\|Remark\|String\|Escape\|FileName\|DateTime\)'
let b:undo_ftplugin .= ' | unlet! b:match_ignorecase b:match_words b:match_skip'
