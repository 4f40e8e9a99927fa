# Warnings are set here and nowhere else. Every target of the build gets them through
# mivo_warnings (mivo_check_warnings at the end of the top-level CMakeLists.txt fails the
# configuration otherwise); the module kit ships this file, so a module project can use it too.
function(mivo_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wno-unused-parameter
    $<$<COMPILE_LANGUAGE:CXX>:-Wno-missing-field-initializers>)
  set_target_properties(${target} PROPERTIES MIVO_WARNINGS ON)
endfunction()

# Fails the configuration when a compiled target of `dir` or a folder below it was made
# without mivo_warnings.
function(mivo_check_warnings dir)
  set(pending ${dir})
  set(missing "")
  while(pending)
    list(POP_FRONT pending current)
    get_property(targets DIRECTORY ${current} PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
      get_target_property(type ${target} TYPE)
      get_target_property(warned ${target} MIVO_WARNINGS)
      if(type MATCHES "^(EXECUTABLE|STATIC_LIBRARY|SHARED_LIBRARY|MODULE_LIBRARY|OBJECT_LIBRARY)$" AND NOT warned)
        list(APPEND missing ${target})
      endif()
    endforeach()
    get_property(subdirs DIRECTORY ${current} PROPERTY SUBDIRECTORIES)
    list(APPEND pending ${subdirs})
  endwhile()
  if(missing)
    message(FATAL_ERROR "targets without mivo_warnings: ${missing}")
  endif()
endfunction()
