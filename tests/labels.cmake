# Read by CTest after the tests of zon_tests are known: the tests that take long are labelled `slow`, those that
# the thread sanitizer watches `threads`.
foreach(test IN LISTS zon_tests_TESTS)
  if(test MATCHES "^(Size|SaveSequences)")
    set_tests_properties(${test} PROPERTIES LABELS "own;slow")
  elseif(test MATCHES "^Threads")
    set_tests_properties(${test} PROPERTIES LABELS "own;threads")
  endif()
endforeach()
