# What `cmake --install` puts where: the library with what a program needs to be built against it. The tool and
# the message bundle install themselves.
include(CMakePackageConfigHelpers)

install(TARGETS dfdl EXPORT dfdl LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${CMAKE_SOURCE_DIR}/include/dfdl/dfdl.h ${CMAKE_BINARY_DIR}/generated/dfdl/pifwrapper.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/dfdl)

set(PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/dfdl)
install(EXPORT dfdl FILE dfdl-config.cmake NAMESPACE dfdl:: DESTINATION ${PACKAGE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/dfdl-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/dfdl-config-version.cmake DESTINATION ${PACKAGE_DIR})

# Relative to the file itself, so that an installed tree can be moved. How far up the prefix is depends on the
# depth of the library folder (lib, lib64, lib/x86_64-linux-gnu).
file(RELATIVE_PATH UP_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" UP_TO_PREFIX ${UP_TO_PREFIX})
configure_file(${CMAKE_SOURCE_DIR}/cmake/dfdl.pc.in ${CMAKE_CURRENT_BINARY_DIR}/dfdl.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/dfdl.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
