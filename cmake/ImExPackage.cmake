# What is installed: three shared libraries, made of the folders' objects, with their headers and a package file for
# find_package(); the programs with their samples and manual pages; the Designer plugin. CPack makes Debian packages of
# it.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(IMEX_INSTALL_CMAKE ${CMAKE_INSTALL_LIBDIR}/cmake/ImEx)

# imex_package_library(NAME FOLDERS ... LINKS ... [PRIVATE_LINKS ...])
#
# The shared library libimex-NAME of these folders below src/, exported as ImEx::NAME.
function(imex_package_library name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;LINKS;PRIVATE_LINKS" ${ARGN})
  set(target imex-${name})
  add_library(${target} SHARED)
  add_library(ImEx::${name} ALIAS ${target})
  foreach(folder IN LISTS ARG_FOLDERS)
    string(REPLACE "/" "_" part imex_${folder})
    get_target_property(type ${part} TYPE)
    if(NOT type STREQUAL "INTERFACE_LIBRARY")
      target_sources(${target} PRIVATE $<TARGET_OBJECTS:${part}>)
      add_dependencies(${target} ${part})
    endif()
    install(DIRECTORY ${CMAKE_SOURCE_DIR}/src/${folder}/
      DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/imex/${folder}
      COMPONENT development
      FILES_MATCHING PATTERN "*.h")
  endforeach()
  set_target_properties(${target} PROPERTIES
    LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME ${name}
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
  target_compile_features(${target} INTERFACE cxx_std_20)
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/src> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/imex>)
  target_link_options(${target} PRIVATE LINKER:--no-undefined)
  target_link_libraries(${target} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})

  install(TARGETS ${target} EXPORT ImEx-${name}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
  install(EXPORT ImEx-${name} NAMESPACE ImEx:: DESTINATION ${IMEX_INSTALL_CMAKE} COMPONENT development)
endfunction()

imex_package_library(core
  FOLDERS runtime host module records request platform/system platform/files platform/clock)
imex_package_library(soap
  FOLDERS platform/soap
  LINKS imex-core
  PRIVATE_LINKS pugixml::pugixml CURL::libcurl)
imex_package_library(controls
  FOLDERS platform/qt platform/browser controls/common controls/ImExActionCtrl controls/ImExFileEdit
          controls/ImExDocView controls/ImtExViewCtrl
  LINKS imex-core Qt6::Widgets
  PRIVATE_LINKS Qt6::PrintSupport Qt6::WebEngineWidgets)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ImExConfig.cmake.in ${CMAKE_BINARY_DIR}/ImExConfig.cmake
  INSTALL_DESTINATION ${IMEX_INSTALL_CMAKE})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/ImExConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/ImExConfig.cmake ${CMAKE_BINARY_DIR}/ImExConfigVersion.cmake
  DESTINATION ${IMEX_INSTALL_CMAKE} COMPONENT development)
