amorvelle_add_test(test_event_detail LINKS browse amorvelle_test_http)
amorvelle_add_test(test_event_order LINKS browse)
amorvelle_add_test(test_event_row LINKS browse)
amorvelle_add_test(test_ownership LINKS browse)
amorvelle_add_test(test_tag_palette LINKS browse)
foreach(name test_window test_window_session test_window_deleting test_window_editing)
    amorvelle_add_test(${name} LINKS browse amorvelle_test_http)
endforeach()
foreach(name test_stack_reading test_stack_member)
    amorvelle_add_test(${name}
        LINKS browse amorvelle_test_http amorvelle_test_service LABELS stack)
endforeach()

# No test: takes the pictures in docs/, see scripts/pictures.
add_executable(take_pictures EXCLUDE_FROM_ALL take_pictures.cpp)
set_target_properties(take_pictures PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
target_include_directories(take_pictures PRIVATE "${PROJECT_SOURCE_DIR}/tests")
target_link_libraries(take_pictures PRIVATE
    browse amorvelle_test_http amorvelle_test_service Qt6::Test amorvelle_qt_flags)
