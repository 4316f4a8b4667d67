" Colours for parameter files. Where two items match, the later one wins.
if exists('b:current_syntax') | finish | endif
syntax case ignore
" Comments and strings may be long, so only the file's start tells where one is.
syntax sync fromstart

" Whatever begins no token is a fault.
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
" No bar or # up to the end of the line: the name or the date is not closed.
syntax match zonError /[|#].*/
syntax match zonFileName /|[^|]*|/
syntax match zonDateTime /#[^#]*#/
syntax match zonEscape /''/ contained
" The ends have groups of their own: the indentation asks whether a line's last text is still open.
syntax region zonString matchgroup=zonString start=/'/ skip=/''/ matchgroup=zonStringEnd end=/'/
  \ contains=zonEscape
syntax region zonRemark matchgroup=zonRemark start=/{/ matchgroup=zonRemarkEnd end=/}/
syntax match zonLine +\%(//\|;\).*+
syntax region zonBlock matchgroup=zonBlock start=+/\*+ matchgroup=zonBlockEnd end=+\*/+ contains=zonBlock

" A header ends where something stands that cannot be in it, lest a missing ] colours the whole file.
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
