# Recorded answers, for every test that is labelled "vectors".
add_library(amorvelle_test_vectors STATIC support/Vectors.cpp support/Vectors.h)
target_include_directories(amorvelle_test_vectors PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
target_compile_definitions(amorvelle_test_vectors PRIVATE
    AMORVELLE_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data")
target_link_libraries(amorvelle_test_vectors PUBLIC Qt6::Core PRIVATE amorvelle_qt_flags)

amorvelle_add_test(test_vectors LINKS amorvelle_test_vectors)
amorvelle_add_test(test_worker LINKS platform LABELS threads)
amorvelle_add_test(test_text LINKS platform amorvelle_test_vectors LABELS vectors)
amorvelle_add_test(test_calendar LINKS platform amorvelle_test_vectors LABELS vectors)
amorvelle_add_test(test_address LINKS platform amorvelle_test_vectors LABELS vectors)
