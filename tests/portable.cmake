# The tests of the logic that includes no Windows header.
add_suite(
    portable_tests
    SOURCES base/logging/log_test.cpp
            base/xml/prologscanner_test.cpp
            base/xps/page/gdimatrix_test.cpp
            base/xps/page/markuptext_test.cpp
            base/xps/page/pagedecision_test.cpp
            base/xps/page/pagetransform_test.cpp
            host/opc/packagewriter_test.cpp
            host/opc/partname_test.cpp
            host/xml/reader_test.cpp
            host/xps/xpsdocument_test.cpp
    TESTS_OF page xml host_xps)
add_dependencies(portable_tests test_packages)
target_compile_definitions(portable_tests PRIVATE TEST_DATA_PATH="${CMAKE_CURRENT_SOURCE_DIR}/data")

# The locale with a decimal comma that the tests ask for.
set(locales ${CMAKE_CURRENT_BINARY_DIR}/locales)
add_custom_command(
    OUTPUT ${locales}/de_DE.UTF-8
    COMMAND ${CMAKE_COMMAND} -E make_directory ${locales}
    COMMAND localedef -i de_DE -f UTF-8 ${locales}/de_DE.UTF-8)
add_custom_target(german_locale ALL DEPENDS ${locales}/de_DE.UTF-8)
set_tests_properties(
    portable_tests
    PROPERTIES WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
               ENVIRONMENT "LOCPATH=${locales};UBSAN_OPTIONS=print_stacktrace=1")

if(FUZZING)
    add_subdirectory(machines/fuzz)
endif()
