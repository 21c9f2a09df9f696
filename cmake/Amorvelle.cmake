# What every target of this project shares: warnings, sanitizers, and three ways to add a target.

set(AMORVELLE_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")
# Ours alone: who packages this has a compiler that warns of something else.
option(AMORVELLE_WARNINGS_AS_ERRORS "Refuse code that the compiler warns of" OFF)

add_library(amorvelle_flags INTERFACE)
target_compile_options(amorvelle_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-qual -Wundef -Wvla -Wimplicit-fallthrough)
if(AMORVELLE_WARNINGS_AS_ERRORS)
    target_compile_options(amorvelle_flags INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 takes a std::optional that is empty for one that is uninitialised once it has inlined it.
    target_compile_options(amorvelle_flags INTERFACE -Wno-maybe-uninitialized)
endif()
if(AMORVELLE_SANITIZE)
    target_compile_options(amorvelle_flags INTERFACE
        -fsanitize=${AMORVELLE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(amorvelle_flags INTERFACE -fsanitize=${AMORVELLE_SANITIZE})
endif()

add_library(amorvelle_qt_flags INTERFACE)
target_link_libraries(amorvelle_qt_flags INTERFACE amorvelle_flags)
target_compile_definitions(amorvelle_qt_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS QT_NO_FOREACH QT_STRICT_ITERATORS)

# Notes for scripts/check-arrows what a target is made of and what its own link line names.
function(amorvelle_note_links name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    list(TRANSFORM arg_SOURCES PREPEND "${folder}/")
    list(JOIN arg_SOURCES " " sources)
    list(JOIN arg_LINKS " " links)
    set_property(GLOBAL APPEND_STRING PROPERTY AMORVELLE_LINKS "${name}: ${links}: ${sources}\n")
endfunction()

# Libraries of its own lets scripts/mutate change one without linking what stands on it anew.
set(AMORVELLE_LIBRARIES STATIC CACHE STRING "Make the folders' libraries STATIC or SHARED")

# A library made of files of the current folder. Its headers are reachable as "<folder>/<file>.h":
# each library's include path holds a link to its folder alone. That much the compiler sees to, for
# what the linked libraries link in their turn as well; scripts/check-arrows sees to it that a
# library includes only what its own link line names.
function(amorvelle_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS;PRIVATE_LINKS")
    add_library(${name} ${AMORVELLE_LIBRARIES} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    set(reach "${CMAKE_BINARY_DIR}/include/${name}")
    file(MAKE_DIRECTORY "${reach}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${reach}/${folder}" SYMBOLIC)
    target_include_directories(${name} PUBLIC "${reach}")
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS} amorvelle_qt_flags)
    amorvelle_note_links(${name} SOURCES ${arg_SOURCES} LINKS ${arg_LINKS} ${arg_PRIVATE_LINKS})
endfunction()

# What tests are built with besides: from Qt 6.8 on, the waiting macros of its test library narrow a
# duration where they are used. Named behind the other flags, since the last one counts.
add_library(amorvelle_test_flags INTERFACE)
if(Qt6Test_VERSION VERSION_GREATER_EQUAL 6.8)
    target_compile_options(amorvelle_test_flags INTERFACE -Wno-conversion)
endif()

# Builds what the thread sanitizer is to look at, and no more.
add_custom_target(thread_tests)

# A Qt Test program <name>.cpp of the current folder, run by ctest under <name> without a display and
# against no service but its own. LABELS: vectors (reads recorded answers), threads (also run under TSan),
# stack (needs PostgreSQL). UNLISTED: built, and run by a script instead of ctest.
function(amorvelle_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "UNLISTED" "TIMEOUT" "SOURCES;LINKS;LABELS;DEPENDS;ENVIRONMENT")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${arg_LINKS} Qt6::Test amorvelle_qt_flags amorvelle_test_flags)
    target_compile_definitions(${name} PRIVATE
        AMORVELLE_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    if(arg_DEPENDS)
        add_dependencies(${name} ${arg_DEPENDS})
    endif()
    if("threads" IN_LIST arg_LABELS)
        add_dependencies(thread_tests ${name})
    endif()
    if(arg_UNLISTED)
        return()
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${arg_TIMEOUT}
        LABELS "${arg_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=fr_FR.UTF-8;TZ=Europe/Paris;${arg_ENVIRONMENT}")
endfunction()

# A benchmark bench/<name>.cpp, a plain program that prints its table.
function(amorvelle_add_bench name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bench")
    target_link_libraries(${name} PRIVATE ${arg_LINKS} amorvelle_qt_flags)
endfunction()
