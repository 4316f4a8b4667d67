# Read by CTest after the tests of zon_hpp_tests are known: the thread sanitizer watches those labelled `threads`.
foreach(test IN LISTS zon_hpp_tests_TESTS)
  if(test MATCHES "^HppThreads")
    set_tests_properties(${test} PROPERTIES LABELS threads)
  endif()
endforeach()
