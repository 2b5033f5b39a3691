# What `cmake --install` lays down, in components:
#
#   library       libdatacache.so.N, what a provider's process loads
#   development   headers, CMake package, pkg-config file, the link libdatacache.so
#   zovlib        the simulated switch and its control interface; a real switch library takes its place
#   tool          dcache and its manual page
#   zovsim        the simulated switch as a program, its manual pages and scenarios
#
# Nothing of it says where it lies: a tree that was installed may be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(DATACACHE_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/datacache)
set(DATACACHE_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/datacache)

# What a client includes, and what that includes in turn.
set(DATACACHE_PUBLIC_HEADERS
    platform/zovlib.h
    platform/host.h
    common/include/list_t
    foundation/Export.h
    foundation/Wwn.h
    foundation/cim_log.h
    foundation/MERO_Except.h
    swlib/MERO_Zov_Lib.h
    zoning/ZoningCache.h
    datacache/FabricCache.h
    datacache/DataCacheEvent.h
    datacache/DataCache.h
    datacache/pictures.h)

# headers_into_their_folders(COMPONENT HEADER...)
function(headers_into_their_folders component)
  foreach(header ${ARGN})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${DATACACHE_INCLUDEDIR}/${folder} COMPONENT ${component})
  endforeach()
endfunction()

# ---- library and development ------------------------------------------------------------------------------
install(TARGETS datacache EXPORT datacacheTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        INCLUDES DESTINATION ${DATACACHE_INCLUDEDIR})
headers_into_their_folders(development ${DATACACHE_PUBLIC_HEADERS})

install(EXPORT datacacheTargets NAMESPACE datacache:: DESTINATION ${DATACACHE_CMAKEDIR} COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/datacacheConfig.cmake.in ${PROJECT_BINARY_DIR}/datacacheConfig.cmake
                              INSTALL_DESTINATION ${DATACACHE_CMAKEDIR}
                              NO_SET_AND_CHECK_MACRO)
# Below 1.0 every minor version may break clients; the soname's number says whether it did.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/datacacheConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/datacacheConfig.cmake ${PROJECT_BINARY_DIR}/datacacheConfigVersion.cmake
        DESTINATION ${DATACACHE_CMAKEDIR} COMPONENT development)

file(RELATIVE_PATH DATACACHE_PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(${PROJECT_SOURCE_DIR}/cmake/datacache.pc.in ${PROJECT_BINARY_DIR}/datacache.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/datacache.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# ---- zovlib -----------------------------------------------------------------------------------------------
if(DATACACHE_SIMULATOR)
  install(TARGETS zovlib EXPORT zovlibTargets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT zovlib
          INCLUDES DESTINATION ${DATACACHE_INCLUDEDIR})
  install(EXPORT zovlibTargets NAMESPACE datacache:: DESTINATION ${DATACACHE_CMAKEDIR} COMPONENT zovlib)
  headers_into_their_folders(zovlib sim/Simulator.h sim/Fault.h sim/Parts.h sim/Record.h sim/Server.h sim/record/Replay.h
                               sim/verbs/perform.h sim/scenario/Scenario.h sim/scenario/Player.h
                               sim/scenario/Shipped.h sim/Play.h)
endif()

# ---- tool and zovsim --------------------------------------------------------------------------------------
# install_program(TARGET COMPONENT PAGE...): beside its libraries wherever the tree is put. Packages for the system's
# folders set CMAKE_SKIP_INSTALL_RPATH.
function(install_program target component)
  file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
  install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
  foreach(page ${ARGN})
    string(REGEX REPLACE ".*\\." "" section ${page})
    install(FILES ${PROJECT_SOURCE_DIR}/docs/man/${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section}
            COMPONENT ${component})
  endforeach()
endfunction()

if(DATACACHE_TOOL)
  install_program(dcache tool dcache.1)
endif()
if(DATACACHE_TOOL AND DATACACHE_SIMULATOR)
  install_program(zovsim zovsim zovsim.1 zovsim-scenario.5)
  file(GLOB scenarios CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/scenarios/*.toml)
  install(FILES ${scenarios} DESTINATION ${CMAKE_INSTALL_DATADIR}/datacache/scenarios COMPONENT zovsim)
endif()
