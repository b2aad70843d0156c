# The libraries that a host links, their headers and their CMake package.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(IMEX_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ImEx)
set(IMEX_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/imex)

# Before 1.0 a new minor version may change the interface, so each has a name of its own for the loader.
set(IMEX_SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

# imex_shared_library(COMPONENT FOLDERS ... [LINKS ...] [PRIVATE_LINKS ...] [RUNTIME_COMPONENT NAME])
#
# One library to install, libimex-<component>, which a host finds as ImEx::<component>. It is made of the objects of the
# libraries of the folders, so nothing is compiled twice, and comes with their public headers. RUNTIME_COMPONENT is the
# part of the installation that the library itself belongs to.
function(imex_shared_library component)
  cmake_parse_arguments(ARG "" "RUNTIME_COMPONENT" "FOLDERS;LINKS;PRIVATE_LINKS" ${ARGN})
  set(name imex-${component})
  set(exports ${CMAKE_SOURCE_DIR}/packaging/exports.map)
  add_library(${name} SHARED)
  add_library(ImEx::${component} ALIAS ${name})
  foreach(folder IN LISTS ARG_FOLDERS)
    string(REPLACE "/" "_" library imex_${folder})
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:${library}>)
    get_target_property(headers ${library} IMEX_PUBLIC_HEADERS)
    if(headers)
      list(TRANSFORM headers PREPEND ${CMAKE_SOURCE_DIR}/src/${folder}/)
      install(FILES ${headers} DESTINATION ${IMEX_HEADER_DIR}/${folder} COMPONENT development)
      set_property(GLOBAL APPEND PROPERTY IMEX_INSTALLED_HEADERS ${headers})
    endif()
  endforeach()
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/src> $<INSTALL_INTERFACE:${IMEX_HEADER_DIR}>)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE imex_options ${ARG_PRIVATE_LINKS})
  # Of what Qt's packages name besides Qt itself, only what is used.
  target_link_options(${name} PRIVATE LINKER:--version-script=${exports} LINKER:--as-needed)
  if(NOT IMEX_SANITIZE)
    # What a library needs, it links. The sanitizers leave some of theirs to the program.
    target_link_options(${name} PRIVATE LINKER:-z,defs)
  endif()
  set_target_properties(${name} PROPERTIES
    EXPORT_NAME ${component}
    LINKER_LANGUAGE CXX
    LINK_DEPENDS ${exports}
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib
    VERSION ${PROJECT_VERSION}
    SOVERSION ${IMEX_SOVERSION}
    # The libraries of one folder find each other, wherever that folder is.
    INSTALL_RPATH $ORIGIN)
  install(TARGETS ${name} EXPORT ImEx-${component}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${ARG_RUNTIME_COMPONENT} NAMELINK_COMPONENT development)
  install(EXPORT ImEx-${component}
    NAMESPACE ImEx::
    DESTINATION ${IMEX_PACKAGE_DIR}
    COMPONENT development)
endfunction()

# What find_package(ImEx) reads first.
function(imex_install_package)
  configure_package_config_file(${CMAKE_SOURCE_DIR}/packaging/ImExConfig.cmake.in
    ${CMAKE_BINARY_DIR}/packaging/ImExConfig.cmake
    INSTALL_DESTINATION ${IMEX_PACKAGE_DIR}
    NO_SET_AND_CHECK_MACRO)
  write_basic_package_version_file(${CMAKE_BINARY_DIR}/packaging/ImExConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
  install(FILES ${CMAKE_BINARY_DIR}/packaging/ImExConfig.cmake ${CMAKE_BINARY_DIR}/packaging/ImExConfigVersion.cmake
    DESTINATION ${IMEX_PACKAGE_DIR}
    COMPONENT development)
endfunction()
