# The local service as a whole, on a real PostgreSQL.
add_library(amorvelle_test_service STATIC support/LocalService.cpp)
set_target_properties(amorvelle_test_service PROPERTIES AUTOMOC ON)
target_include_directories(amorvelle_test_service PUBLIC "${PROJECT_SOURCE_DIR}/tests")
target_compile_definitions(amorvelle_test_service PRIVATE
    AMORVELLE_SERVICE_PROGRAM="$<TARGET_FILE:amorvelle-service>")
target_link_libraries(amorvelle_test_service PUBLIC Qt6::Core PRIVATE amorvelle_qt_flags)
add_dependencies(amorvelle_test_service amorvelle-service)

foreach(name test_service_reading test_service_writing test_service_accounts
        test_service_lifecycle)
    amorvelle_add_test(${name}
        LINKS amorvelle_test_service Qt6::Network
        SOURCES support/ServiceClient.cpp
        LABELS stack threads
        TIMEOUT 240)
endforeach()
amorvelle_add_test(test_service_policies
    LINKS amorvelle_test_service
    LABELS stack
    TIMEOUT 240)
target_compile_definitions(test_service_policies PRIVATE
    AMORVELLE_POLICY_TESTS="${PROJECT_SOURCE_DIR}/supabase/tests")
