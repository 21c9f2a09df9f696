amorvelle_add_test(test_menu LINKS controls)
amorvelle_add_test(test_date_time_fields LINKS controls)
amorvelle_add_test(test_text_editor LINKS controls)
amorvelle_add_test(test_event_form LINKS editor amorvelle_test_vectors LABELS vectors)
amorvelle_add_test(test_tag_menu LINKS editor)
amorvelle_add_test(test_add_event_view
    SOURCES support/FormTest.h LINKS editor amorvelle_test_http)
amorvelle_add_test(test_save_event
    SOURCES support/FormTest.h LINKS editor amorvelle_test_http)
