# Warnings, sanitizers and Qt defines that every target of this project is built with.
add_library(TvlCompileOptions INTERFACE)
target_compile_options(TvlCompileOptions INTERFACE -Wall -Wextra -Wpedantic)
if(TVL_WERROR)
    target_compile_options(TvlCompileOptions INTERFACE -Werror)
endif()
target_compile_definitions(TvlCompileOptions INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH
    QT_NO_KEYWORDS
    QT_DEPRECATED_WARNINGS)

# The fuzz targets add the driver themselves. Instrumenting the library too shows the driver what an
# input reached; replaying seeds needs none of that.
if(TVL_BUILD_FUZZ AND TVL_FUZZ_COVERAGE)
    target_compile_options(TvlCompileOptions INTERFACE -fsanitize=fuzzer-no-link)
    target_link_options(TvlCompileOptions INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Sanitizers watch what a target does that links TvlInstrumented: the library, the tool, the examples
# and the fuzz targets. All others only link their runtime, the tests among them, whose own code
# would take most of the build's time.
add_library(TvlInstrumented INTERFACE)
target_link_libraries(TvlInstrumented INTERFACE TvlCompileOptions)
if(TVL_SANITIZE)
    target_compile_options(TvlInstrumented INTERFACE
        -fsanitize=${TVL_SANITIZE} -fno-sanitize-recover=all)
    # Clang needs the vptr check off: it wants type information that Qt's libraries don't export.
    # Qt's headers compare a list that never held anything with an emptied one by memcmp(nullptr, …, 0).
    target_compile_options(TvlInstrumented INTERFACE -fno-sanitize=vptr,nonnull-attribute)
    target_compile_options(TvlCompileOptions INTERFACE -fno-omit-frame-pointer)
    target_link_options(TvlCompileOptions INTERFACE -fsanitize=${TVL_SANITIZE})
    target_compile_definitions(TvlCompileOptions INTERFACE QT_FORCE_ASSERTS TVL_SANITIZED)
endif()
