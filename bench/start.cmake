# Its other side are a bus and a portal of the tests'.
if(TARGET amorvelle_test_portal)
    amorvelle_add_bench(start_stock LINKS Qt6::Widgets)
    amorvelle_add_bench(start_plain LINKS Qt6::Widgets Qt6::Network)
    amorvelle_add_bench(bench_start
        LINKS amorvelle_test_portal
        SOURCES Clocks.h EventsReply.cpp EventsReply.h LoopbackService.cpp LoopbackService.h
            Screen.cpp Screen.h)
    target_compile_definitions(bench_start PRIVATE
        AMORVELLE_PROGRAM="$<TARGET_FILE:amorvelle>"
        AMORVELLE_START_PLAIN="$<TARGET_FILE:start_plain>"
        AMORVELLE_START_STOCK="$<TARGET_FILE:start_stock>")
    add_dependencies(bench_start amorvelle start_plain start_stock)
endif()
