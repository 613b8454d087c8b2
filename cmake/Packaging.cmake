# What is installed where, and the two Debian packages: the library for integrators, and the desktop kit.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME library)
set(kit_libdir ${CMAKE_INSTALL_LIBDIR}/corvis)
set(kit_libexecdir ${CMAKE_INSTALL_LIBEXECDIR}/corvis)
set(kit_datadir ${CMAKE_INSTALL_DATADIR}/corvis)

set_target_properties(corvis_voiceinteraction PROPERTIES INSTALL_RPATH "$ORIGIN/corvis")
install(TARGETS corvis_voiceinteraction LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/platform/include/nurvo DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvis
        COMPONENT library)
install(FILES ${CMAKE_BINARY_DIR}/voiceinteraction_api.js DESTINATION ${kit_datadir} COMPONENT library)
# Relative to itself, so that it is right wherever the package is put.
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/corvis_voiceinteraction.pc.in corvis_voiceinteraction.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/corvis_voiceinteraction.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT library)

if(NOT CORVIS_PLATFORM)
  # The stand-in stands in a folder of its own, where no real platform is looked for.
  set_target_properties(nurvo_common nurvo_platform PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS nurvo_common nurvo_platform LIBRARY DESTINATION ${kit_libdir} COMPONENT library)
endif()

if(TARGET corvis-tv)
  set_target_properties(corvis-tv corvis-voice PROPERTIES INSTALL_RPATH "$ORIGIN/../../${kit_libdir}")
  set_target_properties(corvis_tv_web_process PROPERTIES INSTALL_RPATH "$ORIGIN/..")
  install(TARGETS corvis-tv corvis-voice RUNTIME DESTINATION ${kit_libexecdir} COMPONENT kit)
  install(TARGETS corvis_tv_web_process LIBRARY DESTINATION ${kit_libdir}/web-process COMPONENT kit)
  install(PROGRAMS ${CMAKE_SOURCE_DIR}/corvis DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT kit)
  install(FILES ${CMAKE_SOURCE_DIR}/tools/apps.sh ${CMAKE_SOURCE_DIR}/tools/stage.sh DESTINATION ${kit_datadir}/tools COMPONENT kit)
  file(WRITE ${CMAKE_BINARY_DIR}/places "kit_bin=${CMAKE_INSTALL_LIBEXECDIR}/corvis
kit_library=${CMAKE_INSTALL_LIBDIR}/libcorvis_voiceinteraction.so
")
  install(FILES ${CMAKE_BINARY_DIR}/places DESTINATION ${kit_datadir} COMPONENT kit)
  install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples ${CMAKE_SOURCE_DIR}/types DESTINATION ${kit_datadir} COMPONENT kit)
  install(DIRECTORY ${CMAKE_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT kit)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR corvis)
set(CPACK_PACKAGE_CONTACT "corvis maintainers <maintainers@corvis.example>")
set(CPACK_COMPONENTS_ALL library)
if(TARGET corvis-tv)
  list(APPEND CPACK_COMPONENTS_ALL kit)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libcorvis-voiceinteraction)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Voice control for web applications on a TV: the extension library")
set(CPACK_DEBIAN_KIT_PACKAGE_NAME corvis-kit)
set(CPACK_DEBIAN_KIT_PACKAGE_SECTION web)
set(CPACK_DEBIAN_KIT_PACKAGE_DEPENDS "dbus, xvfb, fonts-dejavu-core, bash (>= 5.1)")
set(CPACK_COMPONENT_KIT_DESCRIPTION "Voice control for web applications on a TV: try and test on a desktop")
set(CPACK_COMPONENT_KIT_DEPENDS library)
include(CPack)
