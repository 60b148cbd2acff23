# Asio, spdlog and fmt, all three as headers only: the same way on every target, nothing to link, and sanitizers see
# all of their code.
add_library(header_only_libraries INTERFACE)
target_compile_definitions(header_only_libraries INTERFACE
    ASIO_STANDALONE SPDLOG_HEADER_ONLY SPDLOG_FMT_EXTERNAL FMT_HEADER_ONLY)

find_path(HEADER_ONLY_LIBRARIES_DIR asio.hpp REQUIRED NO_CMAKE_FIND_ROOT_PATH)
set(header_only_dir ${HEADER_ONLY_LIBRARIES_DIR})
if(CMAKE_CROSSCOMPILING)
    # The build machine's own include directory must stay out of the search path, as its C library's headers are for
    # another processor. So just these three are linked into a directory of their own.
    set(header_only_dir ${CMAKE_BINARY_DIR}/header_only_libraries)
    file(MAKE_DIRECTORY ${header_only_dir})
    foreach(name asio asio.hpp spdlog fmt)
        file(CREATE_LINK ${HEADER_ONLY_LIBRARIES_DIR}/${name} ${header_only_dir}/${name} SYMBOLIC)
    endforeach()
endif()
foreach(header asio.hpp spdlog/spdlog.h fmt/format.h)
    if(NOT EXISTS ${header_only_dir}/${header})
        message(FATAL_ERROR "${header} is missing; ./test installs what the build needs")
    endif()
endforeach()
target_include_directories(header_only_libraries SYSTEM INTERFACE ${header_only_dir})
