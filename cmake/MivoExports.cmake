# An executable that exports the whole library to module DLLs must carry every object of
# it, not only those it calls itself.
function(mivo_link_whole_library target)
  target_link_libraries(${target} PRIVATE mivo_common)
  target_link_options(${target} PRIVATE "LINKER:--whole-archive"
    $<TARGET_FILE:mivo_common> $<TARGET_FILE:mivo_toolkit> "LINKER:--no-whole-archive")
endfunction()
