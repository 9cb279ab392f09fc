# Installing. The bus lock's key is made from /lib/libkelvo.so, so that is where the library goes
# unless another prefix is asked for.

if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
  set(CMAKE_INSTALL_PREFIX / CACHE PATH "Install prefix" FORCE)
endif()

install(TARGETS kelvo LIBRARY DESTINATION lib COMPONENT library)

# Below / the files for development belong into /usr. The prefix may still change when installing, so
# both arrangements are prepared, and the install script picks one.
include(CMakePackageConfigHelpers)
set(KELVO_PACKAGE_FILES ${PROJECT_BINARY_DIR}/package)
write_basic_package_version_file(${KELVO_PACKAGE_FILES}/kelvoConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
foreach(arrangement IN ITEMS "root:../lib" "prefix:lib")
  string(REPLACE ":" ";" arrangement ${arrangement})
  list(GET arrangement 0 name)
  list(GET arrangement 1 KELVO_LIBRARY_FOLDER)  # seen from the folder that holds include/
  configure_file(cmake/kelvo.pc.in ${KELVO_PACKAGE_FILES}/${name}/kelvo.pc @ONLY)
  configure_file(cmake/kelvoConfig.cmake.in ${KELVO_PACKAGE_FILES}/${name}/kelvoConfig.cmake @ONLY)
endforeach()
set(KELVO_HEADER_FOLDER ${PROJECT_SOURCE_DIR}/include)
configure_file(cmake/install_development.cmake.in install_development.cmake @ONLY)
install(SCRIPT ${PROJECT_BINARY_DIR}/install_development.cmake COMPONENT development)

# The simulated camera and its tools are declared later, if at all.
function(kelvo_install_simulator)
  if(TARGET kelvo_sim)
    install(TARGETS kelvo_sim LIBRARY DESTINATION lib/kelvo COMPONENT simulator)
  endif()
  if(TARGET kelvo_sim_tool)
    install(TARGETS kelvo_sim_tool RUNTIME DESTINATION bin COMPONENT simulator)
  endif()
  if(TARGET kelvoctl)
    install(TARGETS kelvoctl RUNTIME DESTINATION bin COMPONENT tools)
  endif()
endfunction()
cmake_language(DEFER CALL kelvo_install_simulator)
