" Syntax of parameter files. If two items match at one place, the later one in this file wins.
if exists('b:current_syntax') | finish | endif
syntax case ignore
" Comments and strings can be long, so the state of a line is only known from the start of the file.
syntax sync fromstart

" A character that begins no token is an error.
syntax match zonError /[^ \t\r\x0b\x0c]/
syntax match zonPunctuation /[][()=,+-]/
syntax match zonHeaderError +[0-9_/]+ contained
syntax match zonSection /\a\w*/ contained
syntax match zonKey /\a\w*/
syntax match zonBoolean /\%(true\|false\)\w\@!/
syntax match zonEndSect /endsect\w\@!/
syntax match zonDefault /default\w\@!/
syntax match zonNumber /\%(\d\+\.\=\d*\|\.\d\+\)\%(e[-+]\=\d\+\)\=/
syntax match zonError /\%(\d\+\.\=\d*\|\.\d\+\)e\%([-+]\d\@!\|[-+0-9]\@!\)/
syntax match zonSubstitution /%\%([ \t]*\%(\d\+[0-9.e]\@!\|\a\w*\)\)\=/
" No closing bar or # on the line.
syntax match zonError /[|#].*/
syntax match zonFileName /|[^|]*|/
syntax match zonDateTime /#[^#]*#/
syntax match zonEscape /''/ contained
" The ends have groups of their own, by which the indentation sees whether a text is still open.
syntax region zonString matchgroup=zonString start=/'/ skip=/''/ matchgroup=zonStringEnd end=/'/
  \ contains=zonEscape
syntax region zonRemark matchgroup=zonRemark start=/{/ matchgroup=zonRemarkEnd end=/}/
syntax match zonLine +\%(//\|;\).*+
syntax region zonBlock matchgroup=zonBlock start=+/\*+ matchgroup=zonBlockEnd end=+\*/+ contains=zonBlock

" A header also ends at a character that cannot be in it, so a missing ] does not colour the whole file.
syntax region zonHeader matchgroup=zonPunctuation start=/\[/ end=/]/
  \ end=+\ze[^] \t\r\x0b\x0cA-Za-z0-9_()/;]+ transparent
  \ contains=zonHeaderError,zonPunctuation,zonSection,zonBoolean,zonEndSect,zonDefault,zonLine,zonBlock

for s:link in split('Error:Error HeaderError:Error Punctuation:Delimiter Key:Identifier Section:Title'
  \ . ' Boolean:Boolean EndSect:Statement Default:Statement Number:Number Substitution:PreProc'
  \ . ' FileName:Underlined DateTime:Constant String:String StringEnd:String Escape:SpecialChar'
  \ . ' Remark:SpecialComment RemarkEnd:SpecialComment Line:Comment Block:Comment BlockEnd:Comment')
  execute 'highlight default link zon' . substitute(s:link, ':', ' ', '')
endfor
let b:current_syntax = 'zon'
