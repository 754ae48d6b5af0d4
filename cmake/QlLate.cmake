# ql_late: the system's libraries for windows and shells are loaded by the first call that needs them. They are more
# than a third of what a program without windows takes to start; in one with windows they are there already.
# A function that is missing here is linked as ever, and its library is loaded at the start: the test `exports` tells.
# Behind the @ stand the bytes that 32-bit calls take; the one function without them is of 64 bits alone.
if(QL_NATIVE)
  return()
endif()
set(late_functions
  "GDI32 CreateBitmap@20 CreateCompatibleDC@4 CreateDIBSection@24 DeleteDC@4 DeleteObject@4 GetDIBits@28
   GetObjectType@4 GetObjectW@12 GetTextExtentPoint32W@16 SetDIBits@28"
  "MPR WNetGetUniversalNameW@16"
  "OLE32 CoTaskMemFree@4 OleInitialize@4 OleUninitialize@0"
  "SHELL32 SHBrowseForFolderW@4 SHGetFolderPathW@20 SHGetPathFromIDListW@8"
  "USER32 CallWindowProcW@20 CreateIconIndirect@4 EnumDisplayMonitors@16 FindWindowExW@16 GetIconInfo@8
   GetMonitorInfoW@8 GetPropW@8 GetSystemMetrics@4 GetWindowLongW@8 GetWindowPlacement@8 GetWindowTextLengthW@4
   GetWindowTextW@12 LoadImageW@24 MessageBoxW@16 MonitorFromRect@8 PostMessageW@16 RemovePropW@8 SendMessageW@16
   SetPropW@12 SetWindowLongPtrW SetWindowLongW@12 SetWindowPlacement@8 SetWindowPos@28 SetWindowTextW@8
   SystemParametersInfoW@16 WaitForInputIdle@8")

add_library(ql_late INTERFACE)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
foreach(row ${late_functions})
  string(REGEX MATCHALL "[^ \n]+" functions "${row}")
  list(POP_FRONT functions library)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    list(TRANSFORM functions REPLACE "@.*" "")
  else()
    list(FILTER functions INCLUDE REGEX "@")
    # The linker drops a stub that is called through its address alone, which is what the system's headers do.
    list(TRANSFORM functions PREPEND "-Wl,--undefined=_" OUTPUT_VARIABLE kept)
    target_link_options(ql_late INTERFACE ${kept})
  endif()
  list(JOIN functions "\n" exports)
  # Without a folder: the stubs' symbols are named after the file.
  set(stubs late_${library}.a)
  file(CONFIGURE OUTPUT lib/late_${library}.def CONTENT "LIBRARY ${library}.dll\nEXPORTS\n${exports}\n")
  add_custom_command(OUTPUT lib/${stubs} DEPENDS lib/late_${library}.def VERBATIM
    COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def late_${library}.def --output-delaylib ${stubs}
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  list(APPEND late_stubs ${PROJECT_BINARY_DIR}/lib/${stubs})
endforeach()
add_custom_target(late_stubs DEPENDS ${late_stubs})
add_dependencies(ql_late late_stubs)
target_link_libraries(ql_late INTERFACE ${late_stubs} delayimp)
