" `set`, since Vim knows another format with this ending; files of that one begin with `.{`.
autocmd BufNewFile,BufRead *.zon
  \ if getline(nextnonblank(1)) !~# '^\s*\.{' | set filetype=zon | endif
