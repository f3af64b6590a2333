# The test that builds the library a second time, on the platform of this folder, and runs a program on it.
add_test(NAME HostPlatform.TheLibraryBuildsAndWorksOnAnotherPlatform
  COMMAND ${CMAKE_CTEST_COMMAND}
    --build-and-test ${PROJECT_SOURCE_DIR} ${CMAKE_BINARY_DIR}/OnHostPlatform
    --build-generator ${CMAKE_GENERATOR}
    --build-target HostPlatformProgram
    --build-options -DKIV_PLATFORM=${CMAKE_CURRENT_LIST_DIR} -DKIV_TESTS=OFF -DKIV_EXAMPLES=OFF -DKIV_INSTALL=OFF
      -DKIV_INSPECT=OFF -DKIV_TOOLS=OFF
      -DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE} -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
      -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER} -DKIV_SANITIZE=${KIV_SANITIZE}
    --test-command ${CMAKE_BINARY_DIR}/OnHostPlatform/bin/HostPlatformProgram)
set_tests_properties(HostPlatform.TheLibraryBuildsAndWorksOnAnotherPlatform PROPERTIES TIMEOUT 1200)
