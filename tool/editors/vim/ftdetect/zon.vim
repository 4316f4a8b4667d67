" Vim knows another format with this extension, whose files begin with `.{`. `set` overrides it.
autocmd BufNewFile,BufRead *.zon
  \ if getline(nextnonblank(1)) !~# '^\s*\.{' | set filetype=zon | endif
