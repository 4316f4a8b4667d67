" Reads texts from the file $ZON_JOB and adds to it what Vim makes of them: the syntax group of each
" character, the indentation of the flattened file, and the targets of the jumps in it.
set encoding=utf-8
let &runtimepath = $ZON_VIM . ',' . &runtimepath
packadd matchit
filetype plugin indent on
syntax on
let job = extend(json_decode(join(readfile($ZON_JOB), '')), {'groups': [], 'jumps': []})
for text in job.texts
  enew! | call setline(1, split(text, "\n", 1)) | set filetype=zon
  call add(job.groups, map(getline(1, '$'), {i, line -> map(range(strchars(line)),
    \ {_, c -> synIDattr(synID(i + 1, byteidx(line, c) + 1, 1), 'name')})}))
endfor
execute 'edit!' $ZON_JOB . '.zon'
call setline(1, job.flat)
normal gg=G
let job.indented = getline(1, '$')
for [line, column] in job.from
  call cursor(line, column)
  normal %
  call add(job.jumps, [line('.'), col('.')])
endfor
call writefile([json_encode(job)], $ZON_JOB)
qall!
