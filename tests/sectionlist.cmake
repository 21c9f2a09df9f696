foreach(name test_section_list test_section_list_input test_section_list_content
             test_section_list_reader)
    amorvelle_add_test(${name} LINKS controls SOURCES support/SectionListFixture.h)
endforeach()
