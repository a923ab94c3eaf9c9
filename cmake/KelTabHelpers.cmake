# Build helpers shared by the library, its tests, benchmarks and examples.

# Warnings and Qt definitions every target of this project is compiled with.
function(keltab_configure_target target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wnon-virtual-dtor -Woverloaded-virtual -Wsuggest-override)
    if(KELTAB_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    target_compile_definitions(${target} PRIVATE
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH QT_USE_QSTRINGBUILDER)
    if(KELTAB_SANITIZE)
        # Per target, never through CMAKE_CXX_FLAGS: the consumer project and
        # anything else built from the same tree keep their own flags.
        target_compile_options(${target} PRIVATE
            -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
endfunction()

# Adds sources of one subsystem folder to the library. PUBLIC_HEADERS are
# installed under include/KelTabContainer/ and listed in the umbrella header.
function(keltab_add_sources)
    cmake_parse_arguments(ARG "" "" "PUBLIC_HEADERS;SOURCES;PRIVATE_HEADERS;RESOURCES" ${ARGN})
    set(files)
    foreach(f IN LISTS ARG_PUBLIC_HEADERS ARG_SOURCES ARG_PRIVATE_HEADERS ARG_RESOURCES)
        list(APPEND files "${CMAKE_CURRENT_SOURCE_DIR}/${f}")
    endforeach()
    target_sources(KelTabContainer PRIVATE ${files})
    foreach(h IN LISTS ARG_PUBLIC_HEADERS)
        set_property(GLOBAL APPEND PROPERTY KELTAB_PUBLIC_HEADERS "${CMAKE_CURRENT_SOURCE_DIR}/${h}")
    endforeach()
    set_property(GLOBAL APPEND PROPERTY KELTAB_SOURCE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}")
endfunction()
