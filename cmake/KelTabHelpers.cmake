# SPDX-License-Identifier: MIT
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

# keltab_add_translations(target PREFIX prefix [QM_FILES var]
#                         [UPDATE_TARGET name SOURCE_DIR dir [TEMPLATE file.ts]]
#                         TS file.ts...)
# Compiles the catalogues with lrelease at build time and embeds the .qm files in
# target under the resource folder PREFIX; QM_FILES receives their paths, for
# installation. Without Qt's Linguist tools it says so and leaves target English.
# UPDATE_TARGET adds a target that brings the catalogues (and the untranslated
# TEMPLATE, which is not compiled) in step with the texts of the sources in
# SOURCE_DIR; run it after changing a text.
function(keltab_add_translations target)
    cmake_parse_arguments(ARG "" "PREFIX;QM_FILES;UPDATE_TARGET;SOURCE_DIR;TEMPLATE" "TS" ${ARGN})
    find_package(${KELTAB_QT} ${KELTAB_QT_MIN_VERSION} QUIET COMPONENTS LinguistTools)
    if(ARG_UPDATE_TARGET AND TARGET ${KELTAB_QT}::lupdate)
        add_custom_target(${ARG_UPDATE_TARGET}
            COMMAND ${KELTAB_QT}::lupdate -no-obsolete -locations none "${ARG_SOURCE_DIR}"
                    -ts ${ARG_TEMPLATE} ${ARG_TS}
            WORKING_DIRECTORY "${ARG_SOURCE_DIR}"
            VERBATIM)
    endif()
    set(qm_files)
    if(NOT TARGET ${KELTAB_QT}::lrelease)
        message(STATUS "Qt's Linguist tools not found: ${target} is built without its translations")
    else()
        set(out_dir "${CMAKE_CURRENT_BINARY_DIR}/${target}_translations")
        set_source_files_properties(${ARG_TS} PROPERTIES OUTPUT_LOCATION "${out_dir}")
        if(KELTAB_QT_MAJOR_VERSION STREQUAL "5")
            qt5_add_translation(qm_files ${ARG_TS})
        else()
            qt6_add_translation(qm_files ${ARG_TS})
        endif()
        set(qrc "<RCC>\n<qresource prefix=\"${ARG_PREFIX}\">\n")
        foreach(qm IN LISTS qm_files)
            get_filename_component(name "${qm}" NAME)
            string(APPEND qrc "    <file alias=\"${name}\">${qm}</file>\n")
        endforeach()
        string(APPEND qrc "</qresource>\n</RCC>\n")
        file(WRITE "${out_dir}/${target}_translations.qrc" "${qrc}")
        if(KELTAB_QT_MAJOR_VERSION STREQUAL "5")
            qt5_add_resources(resources "${out_dir}/${target}_translations.qrc")
        else()
            qt6_add_resources(resources "${out_dir}/${target}_translations.qrc")
        endif()
        target_sources(${target} PRIVATE ${resources})
    endif()
    if(ARG_QM_FILES)
        set(${ARG_QM_FILES} ${qm_files} PARENT_SCOPE)
    endif()
endfunction()
