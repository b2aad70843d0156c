# A PostgreSQL server for tests. imex_postgres_tests(NAME) finds the tests of a program that need one; those of a run
# share it, started before the first and stopped behind the last.
find_package(PkgConfig REQUIRED)
pkg_check_modules(Libpq REQUIRED IMPORTED_TARGET GLOBAL libpq)

add_library(imex_test_postgres STATIC PostgresCluster.cpp PostgresDatabase.cpp)
target_link_libraries(imex_test_postgres PUBLIC imex_test_support PRIVATE imex_options PkgConfig::Libpq GTest::gtest)

add_executable(postgres_cluster postgresClusterMain.cpp)
target_link_libraries(postgres_cluster PRIVATE imex_options imex_test_postgres)

add_test(NAME Postgres.isStarted COMMAND postgres_cluster start ${CMAKE_BINARY_DIR}/postgres-cluster)
add_test(NAME Postgres.isStopped COMMAND postgres_cluster stop ${CMAKE_BINARY_DIR}/postgres-cluster)
set_tests_properties(Postgres.isStarted PROPERTIES FIXTURES_SETUP postgres TIMEOUT 120)
set_tests_properties(Postgres.isStopped PROPERTIES FIXTURES_CLEANUP postgres TIMEOUT 120)

function(imex_postgres_tests name)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 FIXTURES_REQUIRED postgres ENVIRONMENT IMEX_POSTGRES=${CMAKE_BINARY_DIR}/postgres-cluster)
endfunction()
