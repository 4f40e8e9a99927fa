# An executable that exports the libraries (common, the UI framework, the toolkit, nbase) to module
# DLLs must carry every object of them, not only those it calls itself.
function(mivo_link_whole_library target)
  target_link_libraries(${target} PRIVATE mivo_common mivo_duilib)
  target_link_options(${target} PRIVATE "LINKER:--whole-archive"
    $<TARGET_FILE:mivo_common> $<TARGET_FILE:mivo_duilib> $<TARGET_FILE:mivo_toolkit> $<TARGET_FILE:mivo_base> "LINKER:--no-whole-archive")
endfunction()
