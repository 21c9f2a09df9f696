add_library(amorvelle_test_portal STATIC support/StandInPortal.cpp support/StandInPortal.h)
set_target_properties(amorvelle_test_portal PROPERTIES AUTOMOC ON)
target_include_directories(amorvelle_test_portal PUBLIC "${PROJECT_SOURCE_DIR}/tests")
target_link_libraries(amorvelle_test_portal PUBLIC Qt6::DBus amorvelle_qt_flags)

amorvelle_add_test(test_color_scheme LINKS platform amorvelle_test_portal)
amorvelle_add_test(test_app LINKS ostreloapp browse controls amorvelle_test_portal)
amorvelle_add_test(test_quitting
    LINKS ostreloapp browse amorvelle_test_http amorvelle_test_portal)
