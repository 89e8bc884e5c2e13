# Leaves leaks of Qt's own out of what LeakSanitizer says of the current folder's tests. Call it behind the last one.
function(trel_finish_tests)
  if(NOT TREL_SANITIZE)
    return()
  endif()
  get_property(tests DIRECTORY PROPERTY TESTS)
  set_tests_properties(${tests} PROPERTIES
    ENVIRONMENT "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0")
endfunction()
