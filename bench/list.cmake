amorvelle_add_bench(bench_list LINKS controls SOURCES ListRow.cpp ListRow.h)
