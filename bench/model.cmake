amorvelle_add_bench(bench_decode
    LINKS model simdjson::simdjson Qt6::Core SOURCES EventsReply.cpp EventsReply.h)
