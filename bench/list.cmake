amorvelle_add_bench(bench_list LINKS sectionlist SOURCES Clocks.h ListRow.cpp ListRow.h)
