# The warnings, the sanitizers and the include rule that every target of the project shares.

find_program(IMEX_CCACHE ccache)
if(IMEX_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${IMEX_CCACHE})
endif()

# The windows of the controls, their Designer plugin and their tests.
set(IMEX_QT_VERSION 6.4)
if(NOT IMEX_CORE_ONLY)
  find_package(Qt6 ${IMEX_QT_VERSION} REQUIRED COMPONENTS Widgets PrintSupport WebEngineWidgets UiPlugin Test)
endif()

# The libraries go into programs and into shared libraries, which offer what is marked IMEX_EXPORT and nothing else.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_library(imex_options INTERFACE)
target_compile_options(imex_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 warns wrongly of overlapping copies in std::string's operator+ (its bug 105651).
  target_compile_options(imex_options INTERFACE -Wno-restrict)
endif()
if(IMEX_WARNINGS_AS_ERRORS)
  target_compile_options(imex_options INTERFACE -Werror)
endif()
# What the tests run of the headers' own functions counts too, but not under the sanitizers, to save time.
if(IMEX_COVERAGE)
  target_link_options(imex_options INTERFACE --coverage)
  if(NOT IMEX_SANITIZE)
    target_compile_options(imex_options INTERFACE --coverage)
  endif()
endif()
set(IMEX_SANITIZE_OPTIONS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
if(IMEX_SANITIZE)
  target_compile_options(imex_options INTERFACE ${IMEX_SANITIZE_OPTIONS})
  target_link_options(imex_options INTERFACE -fsanitize=address,undefined)
endif()
if(IMEX_FUZZ)
  target_compile_options(imex_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(imex_options INTERFACE -fsanitize=address,undefined)
endif()

# imex_library(FOLDER SOURCES ... [PUBLIC_HEADERS ...] LINKS ... [PRIVATE_LINKS ...])
#
# One library for one folder below src/, named imex_<folder> ("platform/soap" is imex_platform_soap). A target sees its
# own folder and those of the libraries that it links, and no other: each folder is reached through a link of its own
# below the build directory, so an include against the direction of knowledge does not compile. The public headers are
# those that a host includes; they are installed with the shared library that the folder goes into.
function(imex_library folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_HEADERS;LINKS;PRIVATE_LINKS" ${ARGN})
  string(REPLACE "/" "_" name imex_${folder})
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${root}/${parent})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/src/${folder} ${root}/${folder} SYMBOLIC)

  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${root})
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE imex_options ${ARG_PRIVATE_LINKS})
  if(IMEX_COVERAGE)
    target_compile_options(${name} PRIVATE --coverage)
  endif()
  set_target_properties(${name} PROPERTIES IMEX_PUBLIC_HEADERS "${ARG_PUBLIC_HEADERS}")
endfunction()
