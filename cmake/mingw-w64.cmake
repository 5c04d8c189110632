# Cross-build for 64-bit Windows with mingw-w64, POSIX threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix) # for GoogleTest; ours is C++
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# The run-time libraries go into each product: nothing has to be installed beside them. Their symbols and debug
# information, which would be the larger half of each, stay out. The same sources give the same bytes: no time stamp.
set(product_flags "-static -s -Wl,--no-insert-timestamp")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${product_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${product_flags}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${product_flags}")

find_program(WINE_PROGRAM wine)
if(WINE_PROGRAM)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${WINE_PROGRAM})
endif()
