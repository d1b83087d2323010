# Cross-compilation to 64-bit Windows: clang and lld with the headers and libraries of mingw-w64 and the C++ library of
# its GCC, all linked into each program. Programs run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_STRIP llvm-strip)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# Clang does not find the folder of Debian's cross-compiler by itself, because its name is not a version.
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++.a
                OUTPUT_VARIABLE gcc_folder OUTPUT_STRIP_TRAILING_WHITESPACE)
cmake_path(GET gcc_folder PARENT_PATH gcc_folder)
set(cxx_headers ${gcc_folder}/include/c++)
# The C++ library was built with its own compiler's thread-local variables, and without weak symbols.
set(CMAKE_CXX_FLAGS_INIT
    "-nostdinc++ -isystem ${cxx_headers} -isystem ${cxx_headers}/x86_64-w64-mingw32 -isystem ${cxx_headers}/backward -femulated-tls -D__GXX_TYPEINFO_EQUALITY_INLINE=0")
# The C++ library as lld needs it.
cmake_path(SET mended_folder NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/toolchain)
if(${gcc_folder}/libstdc++.a IS_NEWER_THAN ${mended_folder}/libstdc++.a)
    string(RANDOM mended)
    file(MAKE_DIRECTORY ${mended_folder})
    execute_process(COMMAND python3 ${CMAKE_CURRENT_LIST_DIR}/mend-unwind-tables.py
                            ${gcc_folder}/libstdc++.a ${mended_folder}/${mended}.a
                    COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND llvm-ranlib ${mended_folder}/${mended}.a COMMAND_ERROR_IS_FATAL ANY)
    file(RENAME ${mended_folder}/${mended}.a ${mended_folder}/libstdc++.a)
endif()

set(link_flags "-L ${mended_folder} -B ${gcc_folder} -L ${gcc_folder} -fuse-ld=lld -static -lpthread -Wno-unused-command-line-argument -Wl,--pdb= -Wl,-Xlink=-Brepro -Wl,-Xlink=-pdbaltpath:%_PDB%")
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "${link_flags}")
endforeach()
