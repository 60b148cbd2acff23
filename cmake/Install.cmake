# What `cmake --install` puts where, in three components: the library, what development with it needs, and the tools.
include(CMakePackageConfigHelpers)

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/trsman)
set(include_directory ${CMAKE_INSTALL_INCLUDEDIR}/trsman)

install(TARGETS trsman EXPORT trsman-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
    FILE_SET HEADERS DESTINATION ${include_directory} COMPONENT development
    INCLUDES DESTINATION ${include_directory})
install(EXPORT trsman-targets NAMESPACE trsman:: DESTINATION ${package_directory} COMPONENT development)

configure_package_config_file(cmake/trsman-config.cmake.in ${CMAKE_BINARY_DIR}/cmake/trsman-config.cmake
    INSTALL_DESTINATION ${package_directory})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/cmake/trsman-config-version.cmake COMPATIBILITY SameMinorVersion)
# Relative, as packages are installed elsewhere than the build says.
file(RELATIVE_PATH from_pkgconfig_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/trsman.pc.in ${CMAKE_BINARY_DIR}/cmake/trsman.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/cmake/trsman-config.cmake ${CMAKE_BINARY_DIR}/cmake/trsman-config-version.cmake
    DESTINATION ${package_directory} COMPONENT development)
install(FILES ${CMAKE_BINARY_DIR}/cmake/trsman.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development FILES_MATCHING PATTERN "*.md")

if(TRSMAN_BUILD_TOOLS)
    # The catalogue and the simulated unit: static libraries.
    install(TARGETS trsman_catalogue trsman_unit EXPORT trsman-unit-targets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        FILE_SET HEADERS DESTINATION ${include_directory} COMPONENT development
        INCLUDES DESTINATION ${include_directory})
    install(EXPORT trsman-unit-targets NAMESPACE trsman:: DESTINATION ${package_directory} COMPONENT development)

    install(TARGETS ${tool_programs} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
    foreach(program IN LISTS tool_programs)
        install(FILES ${CMAKE_BINARY_DIR}/man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
    endforeach()
    set(completions ${CMAKE_BINARY_DIR}/completions)
    foreach(program IN LISTS tool_programs)
        install(FILES ${completions}/${program}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            RENAME ${program} COMPONENT tools)
        install(FILES ${completions}/${program}.zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
            RENAME _${program} COMPONENT tools)
        install(FILES ${completions}/${program}.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
            COMPONENT tools)
    endforeach()
endif()

# For scripts/check-install: the headers that the libraries have in their lists, one a line.
set(listed_headers)
foreach(library trsman trsman_catalogue trsman_unit)
    if(TARGET ${library})
        get_target_property(headers ${library} HEADER_SET)
        list(APPEND listed_headers ${headers})
    endif()
endforeach()
list(TRANSFORM listed_headers REPLACE "^${PROJECT_SOURCE_DIR}/" "")
list(JOIN listed_headers "\n" listed_headers)
file(WRITE ${CMAKE_BINARY_DIR}/public-headers "${listed_headers}\n")

# `cpack` makes a Debian package of each.
set(library_package libtrsman${PROJECT_VERSION_MAJOR})
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME trsman)
set(CPACK_PACKAGE_VENDOR trsman)
set(CPACK_PACKAGE_CONTACT "The trsman developers <trsman@localhost>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL library development tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Management library of a base station's transport unit\n\
 Typed client proxies for the unit's managed objects, and the services of the\n site management adapter.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtrsman-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION}), libasio-dev, libexpat1-dev, zlib1g-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "nlohmann-json3-dev, libsqlite3-dev, pkg-config")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Development with the transport unit's management library\n\
 Headers, the simulated unit to embed in tests, examples and documents.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME trsman-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "A simulated transport unit, and tools to look at and drive one\n\
 trssim, trsctl and trsadapter.")
include(CPack)
