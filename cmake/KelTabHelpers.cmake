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
