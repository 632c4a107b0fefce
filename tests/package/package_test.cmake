function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")

# Through the CMake package, from a tree that was moved after it was installed.
file(RENAME "${prefix}" "${WORK_DIR}/moved")
set(prefix "${WORK_DIR}/moved")
run(${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${WORK_DIR}/build" -G Ninja
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_FLAGS=${CXX_FLAGS}
    -DCMAKE_BUILD_TYPE=${BUILD_TYPE})
run(${CMAKE_COMMAND} --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/outside" "${WORK_DIR}/Through CMake.tavel")

# The programs that the library starts lie beside the tool.
if(EXISTS "${prefix}/bin/tavel")
    foreach(program IN ITEMS rtfi tavel-doc2any tavel-doc2mmd)
        # Each says how it is used, and so has found the library.
        execute_process(COMMAND "${prefix}/bin/${program}" ERROR_VARIABLE words)
        if(NOT words MATCHES "usage: ${program}")
            message(FATAL_ERROR "${program} doesn't run: ${words}")
        endif()
    endforeach()
endif()

# Through pkg-config.
find_program(pkg_config pkg-config REQUIRED)
set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
execute_process(COMMAND ${pkg_config} --cflags --libs TvlProject
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags} ${CXX_FLAGS}")
run(${CXX} -std=c++20 -fPIC "${SOURCE_DIR}/main.cpp" -o "${WORK_DIR}/through_pkg_config" ${flags}
    "-Wl,-rpath,${prefix}/${LIBDIR}")
run("${WORK_DIR}/through_pkg_config" "${WORK_DIR}/Through pkg-config.tavel")

# All headers are whole: none includes one that isn't installed, and none is private.
file(GLOB headers RELATIVE "${prefix}/include/TvlProject" "${prefix}/include/TvlProject/*.h")
set(includes)
foreach(header IN LISTS headers)
    if(header MATCHES "_p\\.h$")
        message(FATAL_ERROR "${header} is installed")
    endif()
    string(APPEND includes "#include <${header}>\n")
endforeach()
file(WRITE "${WORK_DIR}/headers.cpp" "${includes}")
run(${CXX} -std=c++20 -fPIC -fsyntax-only "${WORK_DIR}/headers.cpp" ${flags})
