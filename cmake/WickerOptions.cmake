# Project-wide compile settings, carried by one INTERFACE target.
add_library(wicker_options INTERFACE)
target_compile_options(wicker_options INTERFACE
    -Wall -Wextra -pedantic -Wold-style-cast -Wshadow)
target_compile_definitions(wicker_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CONTEXTLESS_CONNECT QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    _GLIBCXX_ASSERTIONS)
# GCC 12 reports false -Wrestrict warnings inside std::string at -O2 (GCC bug 105329).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(wicker_options INTERFACE -Wno-restrict)
endif()
if(WICKER_WERROR)
    target_compile_options(wicker_options INTERFACE -Werror)
endif()

# Sanitizers go on every target, third-party-facing ones included, so that
# mixed instrumented/uninstrumented code never hides a fault.
if(WICKER_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=address,undefined)
endif()
