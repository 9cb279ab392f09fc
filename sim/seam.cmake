# The seam: the libc calls that leave the library, intercepted by symbol. Objects, so that a test
# program has them in front of libc and the preload library takes them in as they are.
add_library(kelvo_seam OBJECT
  ${CMAKE_CURRENT_LIST_DIR}/seam/byte_shims.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/camera_paths.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/descriptor_router.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/descriptor_shims.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/descriptors.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/node_shims.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/open_files.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/path_router.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/path_shims.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/real.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/router.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/shims.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seam/sleep_shims.cpp)
set_target_properties(kelvo_seam PROPERTIES UNITY_BUILD OFF)  # it has checks of its own
target_include_directories(kelvo_seam PUBLIC ${PROJECT_SOURCE_DIR})
target_compile_options(kelvo_seam PRIVATE -fvisibility=hidden)
target_link_libraries(kelvo_seam PRIVATE kelvo_options INTERFACE ${CMAKE_DL_LIBS})
