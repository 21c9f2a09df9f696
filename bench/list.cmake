amorvelle_add_bench(bench_list LINKS sectionlist SOURCES ListRow.cpp ListRow.h)
