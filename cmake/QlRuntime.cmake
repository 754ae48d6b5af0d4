# The C++ run time is shared: exceptions and standard types cross the library's boundary only then. Programs find its
# three libraries beside them.
if(NOT QL_NATIVE)
  # How exceptions find their handlers differs with the word size, and the library of it with its name.
  set(unwinder libgcc_s_dw2-1.dll)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(unwinder libgcc_s_seh-1.dll)
  endif()
  foreach(dll libstdc++-6.dll ${unwinder} libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll} OUTPUT_VARIABLE path
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${path}")
      find_file(QL_RUNTIME_${dll} ${dll} PATHS ${CMAKE_FIND_ROOT_PATH}/lib NO_CMAKE_FIND_ROOT_PATH REQUIRED)
      set(path ${QL_RUNTIME_${dll}})
    endif()
    # Without the symbols, which the system would read at each start.
    file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    execute_process(COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0
                            ${CMAKE_OBJCOPY} --strip-debug ${path} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll}
                    COMMAND_ERROR_IS_FATAL ANY)
    list(APPEND QL_RUNTIME_DLLS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll})
  endforeach()
endif()
