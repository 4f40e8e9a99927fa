# Warnings are set here and nowhere else.
function(mivo_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wno-unused-parameter
    $<$<COMPILE_LANGUAGE:CXX>:-Wno-missing-field-initializers>)
endfunction()
