# The warnings of every target. The presets make them errors (ZON_WERROR).
option(ZON_WERROR "Treat warnings as errors" OFF)

function(zon_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<BOOL:${ZON_WERROR}>:-Werror>)
endfunction()
