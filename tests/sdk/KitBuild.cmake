# Configures and builds the project SOURCE in BINARY the way a module author does: a fresh
# CMake run that knows only the kit KIT (its package and its toolchain file), with GENERATOR.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${BINARY})
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BINARY} -G ${GENERATOR} -DCMAKE_BUILD_TYPE=Release
                        -DCMAKE_TOOLCHAIN_FILE=${KIT}/lib/cmake/MivoSdk/mingw-w64-x86_64.cmake
                        -DMivoSdk_DIR=${KIT}/lib/cmake/MivoSdk
  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "configuring ${SOURCE} against the kit failed:\n${out}")
endif()
if(out MATCHES "CMake Warning")
  message(FATAL_ERROR "configuring ${SOURCE} against the kit warned:\n${out}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BINARY}
  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "building ${SOURCE} against the kit failed:\n${out}")
endif()
message(STATUS "built ${SOURCE} against ${KIT}")
