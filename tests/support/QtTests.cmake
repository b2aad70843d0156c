# Tests of what has windows. They need no screen.

add_library(imex_test_ui STATIC ${CMAKE_CURRENT_LIST_DIR}/FakeUi.cpp)
target_link_libraries(imex_test_ui PUBLIC imex_test_support PRIVATE imex_options)

# What a test that shows documents needs: the web engine refuses to run for the superuser in its sandbox, and asks for
# a graphics card.
set(IMEX_WEB_ENGINE_ENVIRONMENT "QTWEBENGINE_DISABLE_SANDBOX=1" "QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu")

# imex_qt_test(NAME SOURCES ... LINKS ... [ENVIRONMENT ...]): like imex_test(), in an application with windows. A Qt
# warning fails the test that causes it.
function(imex_qt_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${ARG_SOURCES} ${CMAKE_SOURCE_DIR}/tests/support/QtTestMain.cpp)
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE IMEX_SOURCE_DIR="${CMAKE_SOURCE_DIR}" QT_NO_KEYWORDS)
  target_link_libraries(${name} PRIVATE imex_options ${ARG_LINKS} imex_test_ui Qt6::Test GTest::gmock GTest::gtest)
  imex_precompile(${name} "${ARG_SOURCES}"
    <gtest/gtest.h> <functional> <memory> <string> <string_view> <vector> <QApplication> <QTest> <QWidget>)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  if(ARG_ENVIRONMENT)
    # The call above takes no list.
    set(properties "TIMEOUT 300 ENVIRONMENT \"QT_QPA_PLATFORM=offscreen;${ARG_ENVIRONMENT}\"")
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${name}_environment.cmake
      "if(${name}_TESTS)\n  set_tests_properties(\${${name}_TESTS} PROPERTIES ${properties})\nendif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}_environment.cmake)
  endif()
endfunction()
