amorvelle_add_bench(bench_decode
    LINKS model simdjson::simdjson Qt6::Core SOURCES Clocks.h EventsReply.cpp EventsReply.h)
