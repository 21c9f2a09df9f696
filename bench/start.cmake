add_library(amorvelle_first_paint STATIC FirstPaint.cpp FirstPaint.h)
set_target_properties(amorvelle_first_paint PROPERTIES AUTOMOC ON)
target_link_libraries(amorvelle_first_paint PUBLIC Qt6::Core PRIVATE amorvelle_qt_flags)

amorvelle_add_bench(start_stock LINKS amorvelle_first_paint Qt6::Widgets)
amorvelle_add_bench(start_window LINKS amorvelle_first_paint ostreloapp browse)
amorvelle_add_bench(bench_start
    LINKS Qt6::Core
    SOURCES Clocks.h EventsReply.cpp EventsReply.h LoopbackService.cpp LoopbackService.h)
target_compile_definitions(bench_start PRIVATE
    AMORVELLE_START_STOCK="$<TARGET_FILE:start_stock>"
    AMORVELLE_START_WINDOW="$<TARGET_FILE:start_window>")
add_dependencies(bench_start start_stock start_window)
