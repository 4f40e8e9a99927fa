# Windows: import libraries that load their DLL at the first call into it instead of when the
# program starts. The launcher carries the whole library, whose families link many system DLLs
# (painting, adapters, timers, crypto, dialogs, structured storage); starting a client needs
# none of them, and under Wine loading them up front is a large part of the start-up.
#
# mivo_delay_import(VAR dll...) sets VAR to the delay-load import libraries of the named DLLs,
# made at configure time from the toolchain's own import libraries (every function they list).
# Link them before the usual libraries, which then resolve only what is code in them (a few
# helpers) and import nothing.
# Only functions may be imported this way, never data.
function(mivo_delay_import var)
  find_program(MIVO_DLLTOOL NAMES x86_64-w64-mingw32-dlltool REQUIRED)
  set(folder ${CMAKE_BINARY_DIR}/delay-import)
  file(MAKE_DIRECTORY ${folder})
  set(libraries)
  foreach(dll ${ARGN})
    set(library ${folder}/lib${dll}_delay.a)
    if(NOT EXISTS ${library})
      execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=lib${dll}.a
                      OUTPUT_VARIABLE import OUTPUT_STRIP_TRAILING_WHITESPACE)
      if(NOT EXISTS "${import}")
        message(FATAL_ERROR "no import library lib${dll}.a for ${dll}.dll")
      endif()
      execute_process(COMMAND ${CMAKE_NM} -g ${import} OUTPUT_VARIABLE symbols)
      string(REGEX MATCHALL " I __imp_[A-Za-z0-9_@]+" imports "${symbols}")
      set(def "LIBRARY ${dll}.dll\nEXPORTS\n")
      list(REMOVE_DUPLICATES imports)
      foreach(entry ${imports})
        string(REPLACE " I __imp_" "" name "${entry}")
        string(APPEND def "${name}\n")
      endforeach()
      file(WRITE ${folder}/${dll}.def "${def}")
      execute_process(COMMAND ${MIVO_DLLTOOL} --input-def ${folder}/${dll}.def --output-delaylib ${library}
                      RESULT_VARIABLE failed)
      if(failed)
        message(FATAL_ERROR "dlltool could not make ${library}")
      endif()
    endif()
    list(APPEND libraries ${library})
  endforeach()
  set(${var} ${libraries} PARENT_SCOPE)
endfunction()
