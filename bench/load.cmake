amorvelle_add_bench(bench_load
    LINKS browse simdjson::simdjson
    SOURCES Clocks.h EventsReply.cpp EventsReply.h LoopbackService.cpp LoopbackService.h)
