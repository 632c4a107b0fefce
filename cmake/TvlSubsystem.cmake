# tvl_add_subsystem(NAME SOURCES file... [LINKS target...])
#
# One folder of src/ as an object library. A subsystem sees only its own headers and those of the
# targets it links, so an include that points up the layers does not compile. All share what the
# first has precompiled of Qt's headers, which every source needs and which take half of its time.
function(tvl_add_subsystem name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} OBJECT ${arg_SOURCES})
    target_compile_definitions(${name} PRIVATE TVLPROJECT_BUILD)
    target_include_directories(${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE TvlInstrumented)
    get_property(subsystems GLOBAL PROPERTY TVL_SUBSYSTEMS)
    if(subsystems)
        list(GET subsystems 0 first)
        target_precompile_headers(${name} REUSE_FROM ${first})
    else()
        target_precompile_headers(${name} PRIVATE
            <QDateTime> <QDir> <QFile> <QHash> <QList> <QMap> <QObject> <QSet> <QString>
            <QStringList> <QUuid> <QVariant> <algorithm> <functional> <memory>)
    endif()

    list(FILTER arg_SOURCES INCLUDE REGEX "\\.h$")
    list(FILTER arg_SOURCES EXCLUDE REGEX "_p\\.h$")
    list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    set_property(GLOBAL APPEND PROPERTY TVL_PUBLIC_HEADERS ${arg_SOURCES})
    set_property(GLOBAL APPEND PROPERTY TVL_SUBSYSTEMS ${name})
    set_property(GLOBAL APPEND PROPERTY TVL_INCLUDE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}")
endfunction()
