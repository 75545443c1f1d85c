# GTest::gtest and GTest::gtest_main: the installed package, or for a cross build compiled from its sources.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(GTest REQUIRED)
    return()
endif()

find_path(MXFZELM_GTEST_SOURCE src/gtest-all.cc
    PATHS /usr/src/googletest/googletest NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
mark_as_advanced(MXFZELM_GTEST_SOURCE)
add_library(mxfzelm-gtest STATIC "${MXFZELM_GTEST_SOURCE}/src/gtest-all.cc")
target_include_directories(mxfzelm-gtest PRIVATE "${MXFZELM_GTEST_SOURCE}")
target_include_directories(mxfzelm-gtest SYSTEM PUBLIC "${MXFZELM_GTEST_SOURCE}/include")
target_compile_features(mxfzelm-gtest PUBLIC cxx_std_20)
add_library(GTest::gtest ALIAS mxfzelm-gtest)
add_library(mxfzelm-gtest-main STATIC "${MXFZELM_GTEST_SOURCE}/src/gtest_main.cc")
target_link_libraries(mxfzelm-gtest-main PUBLIC mxfzelm-gtest)
add_library(GTest::gtest_main ALIAS mxfzelm-gtest-main)
