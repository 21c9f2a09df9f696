# The program as a screen reader meets it: a real process, a real screen and real buses.
add_library(amorvelle_test_reader STATIC
    support/AtSpi.cpp support/AtSpi.h
    support/ReaderDesktop.cpp support/ReaderDesktop.h
    support/ReaderProgram.cpp support/ReaderProgram.h
    support/StandInWindowManager.cpp support/StandInWindowManager.h)
set_target_properties(amorvelle_test_reader PROPERTIES AUTOMOC ON)
find_library(XCB_LIBRARY xcb REQUIRED)
target_compile_definitions(amorvelle_test_reader PRIVATE
    AMORVELLE_PROGRAM="$<TARGET_FILE:amorvelle>")
target_link_libraries(amorvelle_test_reader
    PUBLIC amorvelle_test_http amorvelle_test_portal Qt6::Test ${XCB_LIBRARY}
    PRIVATE amorvelle_qt_flags)
add_dependencies(amorvelle_test_reader amorvelle)

foreach(name test_screen_reader test_screen_reader_list)
    amorvelle_add_test(${name} LINKS browse amorvelle_test_reader TIMEOUT 600)
endforeach()

amorvelle_add_test(test_account_button LINKS browse)
