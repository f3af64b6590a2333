# What every target of the project has in common.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(KIV_WARNINGS_ARE_ERRORS)
  add_compile_options(-Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # A processor fetches code by aligned pieces: without this the speed of a loop depends, by up to a tenth, on how long the code
  # before it happens to be.
  set(aligned -falign-functions=32 -falign-loops=32 -falign-jumps=32)
  add_compile_options("$<$<CONFIG:Release,RelWithDebInfo>:${aligned}>")
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32)
  # Unique symbols would pin the library in the process: dlclose would never unload it.
  add_compile_options(-fno-gnu-unique)
endif()
if(KIV_SANITIZE)
  add_compile_options(-fsanitize=${KIV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=${KIV_SANITIZE})
  if(KIV_SANITIZE STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # The sanitizer's own operator new would stand beside that of the tests that let memory run out. It sees malloc.
    # Only a link as for C leaves it out.
    add_link_options(--driver-mode=gcc)
    link_libraries(stdc++ m)
  endif()
endif()
if(KIV_COVERAGE)
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
  add_link_options(-fprofile-instr-generate)
endif()

# A shared library of ours: the soname and the file name's version, "libX.so.1" (on Windows the name is "X.dll"), and
# the version script `exports.map` of its folder, which keeps in what visibility does not hide: the instances of
# standard templates.
function(kiv_shared_library target)
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "")
  else()
    target_link_options(${target} PRIVATE -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/exports.map)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/exports.map)
  endif()
endfunction()

# The folder that has NAME/HEADER of a library that is nothing but headers, which the Debian package PACKAGE brings. For
# another system the headers are copied, so that nothing else of their folder is found beside them.
function(kiv_headers_of result name header package)
  find_path(KIV_${name}_FOLDER ${name}/${header} NO_CMAKE_FIND_ROOT_PATH)
  if(NOT KIV_${name}_FOLDER)
    message(FATAL_ERROR "<${name}/${header}> is missing, without which kivtree and the library Inspect cannot be built. "
      "Install it (on Debian: apt-get install ${package}), or leave the two out with -DKIV_INSPECT=OFF -DKIV_TOOLS=OFF.")
  endif()
  set(folder ${KIV_${name}_FOLDER})
  if(CMAKE_CROSSCOMPILING)
    file(COPY ${folder}/${name} DESTINATION ${CMAKE_BINARY_DIR}/headers)
    set(folder ${CMAKE_BINARY_DIR}/headers)
  endif()
  set(${result} ${folder} PARENT_SCOPE)
endfunction()
