# What is special to the programs that are shipped.
add_library(ql_shipped INTERFACE)
if(NOT QL_NATIVE)
  # What the compiler and the linker can do for their safety: guarded stacks, checked calls, random addresses, no code
  # in data. The test `exports` holds them against it. The checked calls are linked in: no host has to ship a DLL for
  # them. What they end with is ours.
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libssp.a OUTPUT_VARIABLE checked_calls
                  OUTPUT_STRIP_TRAILING_WHITESPACE)
  add_library(ql_stack_guard STATIC platform/stack_guard.cpp)
  target_link_libraries(ql_stack_guard PRIVATE ql_options INTERFACE ${checked_calls} advapi32)
  option(QL_GUARDED "Guard stacks and check calls; without, bench/guards measures what they cost" ON)
  if(QL_GUARDED)
    target_compile_options(ql_shipped INTERFACE -fstack-protector-strong)
    # Calls can be checked only where the compiler optimises.
    target_compile_definitions(ql_shipped INTERFACE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
  endif()
  target_link_options(ql_shipped INTERFACE -Wl,--dynamicbase,--nxcompat)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    target_link_options(ql_shipped INTERFACE -Wl,--high-entropy-va)
  endif()
  target_link_libraries(ql_shipped INTERFACE ql_stack_guard)

  # Symbols for a host's debugger, which scripts/release puts beside the programs; and the same bytes whoever builds
  # them, wherever and whenever. Of the maps the last is tried first, and the build may lie within the sources.
  set(release_options -g
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
  target_compile_options(ql_shipped INTERFACE -Wdate-time "$<$<CONFIG:Release>:${release_options}>")
  target_link_options(ql_shipped INTERFACE -Wl,--no-insert-timestamp)
  # A PDB as well, in the build's folder: the names of the functions for debuggers that read no others.
  target_link_options(ql_shipped INTERFACE $<$<CONFIG:Release>:-Wl,--pdb=>)
endif()

# ql_part_symbols(program): its debugging symbols in a file beside it, where a debugger finds them. In the program the
# system reads them at each start, which takes longer than all the rest.
function(ql_part_symbols program)
  if(NOT QL_NATIVE)
    # Else the time of its run is noted.
    set(objcopy ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${CMAKE_OBJCOPY})
    set(file $<TARGET_FILE_NAME:${program}>)
    add_custom_command(TARGET ${program} POST_BUILD VERBATIM WORKING_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}
      COMMAND ${objcopy} --only-keep-debug ${file} ${file}.debug
      COMMAND ${objcopy} --strip-debug ${file}
      COMMAND ${objcopy} --add-gnu-debuglink=${file}.debug ${file})
  endif()
endfunction()
