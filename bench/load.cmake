amorvelle_add_bench(bench_load
    LINKS browse backend platform simdjson::simdjson ZLIB::ZLIB
    SOURCES Clocks.h EventsReply.cpp EventsReply.h LoopbackService.cpp LoopbackService.h
        Receiving.cpp Receiving.h)
