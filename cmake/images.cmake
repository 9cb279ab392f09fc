# The program images: nine files of fixed size that come with the lens controller's program. The
# assembler embeds them as read-only data and refuses a file of any other size.

set(KELVO_IMAGE_LIST ${PROJECT_SOURCE_DIR}/wire/program_images.inc)
file(STRINGS ${KELVO_IMAGE_LIST} image_rows REGEX "^KELVO_IMAGE\\(")
set(KELVO_IMAGE_FILES)
foreach(row IN LISTS image_rows)
  string(REGEX MATCH "[a-z0-9_]+\\.bin" name "${row}")
  if(NOT EXISTS "${KELVO_IMAGE_DIR}/${name}")
    message(FATAL_ERROR
      "Program image ${KELVO_IMAGE_DIR}/${name} is missing. "
      "Set KELVO_IMAGE_DIR to a folder that holds the nine images named in ${KELVO_IMAGE_LIST}.")
  endif()
  list(APPEND KELVO_IMAGE_FILES "${KELVO_IMAGE_DIR}/${name}")
endforeach()
if(EXISTS "${KELVO_IMAGE_DIR}/PLACEHOLDER")
  message(STATUS "Program images: PLACEHOLDERS from ${KELVO_IMAGE_DIR} (no lens controller runs them; "
                 "set KELVO_IMAGE_DIR to the real ones)")
else()
  message(STATUS "Program images: from ${KELVO_IMAGE_DIR}")
endif()

set(KELVO_IMAGE_SOURCE ${PROJECT_SOURCE_DIR}/lens/images/images.S)
set_source_files_properties(${KELVO_IMAGE_SOURCE} PROPERTIES
  OBJECT_DEPENDS "${KELVO_IMAGE_FILES};${KELVO_IMAGE_LIST}"
  INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}"
  COMPILE_OPTIONS "-Wa,-I${KELVO_IMAGE_DIR}")
