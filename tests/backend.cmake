# What tests against a loopback service share: the service, and the ways to wait for its replies.
add_library(amorvelle_test_http STATIC
    support/Await.h support/EventLoopChecker.h support/HttpServer.cpp support/HttpServer.h
    support/LocalBackend.h)
set_target_properties(amorvelle_test_http PROPERTIES AUTOMOC ON)
target_include_directories(amorvelle_test_http PUBLIC "${PROJECT_SOURCE_DIR}/tests")
target_link_libraries(amorvelle_test_http PUBLIC backend Qt6::Network PRIVATE amorvelle_qt_flags)

# ThreadSanitizer takes the network library's own threads, which it cannot see into, for races: what
# runs on our worker is tested without a network in test_backend_worker.
amorvelle_add_test(test_backend_configuration
    LINKS backend amorvelle_test_vectors LABELS vectors)
amorvelle_add_test(test_backend_requests
    LINKS amorvelle_test_http amorvelle_test_vectors LABELS vectors)
amorvelle_add_test(test_backend_member_requests
    LINKS amorvelle_test_http amorvelle_test_vectors LABELS vectors)
amorvelle_add_test(test_backend_worker LINKS amorvelle_test_http LABELS threads)
amorvelle_add_test(test_backend_gzip LINKS amorvelle_test_http ZLIB::ZLIB)
foreach(subject
        account diagnostics errors facade failures large members once redirects refusals replies
        tls unconfigured)
    amorvelle_add_test(test_backend_${subject} LINKS amorvelle_test_http)
endforeach()
