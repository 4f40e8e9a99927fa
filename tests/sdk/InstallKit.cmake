# Installs the kit of the build BUILD into KIT, which starts empty.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${KIT})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${KIT} --component sdk
  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "installing the kit failed:\n${out}")
endif()
foreach(file include/common/common.h lib/libMivoStart.dll.a lib/cmake/MivoSdk/MivoSdkConfig.cmake
        lib/cmake/MivoSdk/mingw-w64-x86_64.cmake bin/MivoStart.exe README.md exported_names.txt
        sample/CMakeLists.txt sample/sample_module.cpp)
  if(NOT EXISTS ${KIT}/${file})
    message(FATAL_ERROR "the kit has no ${file}")
  endif()
endforeach()
file(GLOB_RECURSE headers RELATIVE ${KIT}/include ${KIT}/include/*)
list(LENGTH headers count)
message(STATUS "kit in ${KIT}: ${count} headers")
