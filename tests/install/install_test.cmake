# One installation and one client; the variables come from CMakeLists.txt.

include(${CMAKE_CURRENT_LIST_DIR}/support.cmake)

file(REMOVE_RECURSE ${stage})
set(tree ${stage}/tree)
if(root STREQUAL prefix)
  run(${CMAKE_COMMAND} --install ${build} --prefix ${tree})
  set(usr "")
else()
  # Everything below "/", as on the target.
  run(${CMAKE_COMMAND} -E env DESTDIR=${tree} ${CMAKE_COMMAND} --install ${build} --prefix /)
  set(usr usr/)
endif()

# What is installed: the whole list.
set(expected
  bin/kelvo-sim
  lib/kelvo/libkelvo-sim.so
  lib/libkelvo.so
  ${usr}include/kelvo.h
  ${usr}include/kelvo/bus.h
  ${usr}include/kelvo/lens.h
  ${usr}include/kelvo/ois.h
  ${usr}include/kelvo/pantilt.h
  ${usr}lib/cmake/kelvo/kelvoConfig.cmake
  ${usr}lib/cmake/kelvo/kelvoConfigVersion.cmake
  ${usr}lib/pkgconfig/kelvo.pc
  ${usr}share/bash-completion/completions/kelvo-sim
  ${usr}share/man/man1/kelvo-sim.1
  ${usr}share/zsh/site-functions/_kelvo-sim)
if(kelvoctl)
  list(APPEND expected
    bin/kelvoctl
    ${usr}share/bash-completion/completions/kelvoctl
    ${usr}share/man/man1/kelvoctl.1
    ${usr}share/zsh/site-functions/_kelvoctl)
endif()
list(SORT expected)
file(GLOB_RECURSE installed RELATIVE ${tree} ${tree}/*)
list(SORT installed)
expect_equal("Installed files" "${installed}" "${expected}")

# The tree may be moved.
file(RENAME ${tree} ${stage}/moved)
set(tree ${stage}/moved)

set(sanitizer_flags)
if(sanitize)
  set(sanitizer_flags -fsanitize=${sanitize})
endif()

if(client STREQUAL pkg_config)
  set(ENV{PKG_CONFIG_LIBDIR} ${tree}/${usr}lib/pkgconfig)
  run(${pkg_config} --modversion kelvo)
  expect_equal("Version of the package" "${output}" "${version}\n")
  run(${pkg_config} --cflags --libs kelvo)
  separate_arguments(flags UNIX_COMMAND "${output}")
  set(built ${stage}/client)
  run(${compiler} -std=c11 -Wall -Wextra -Wstrict-prototypes -pedantic -Werror ${sanitizer_flags}
      ${program} -o ${built} ${flags})
else()
  run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/client -B ${stage}/build -G ${generator}
      -D PROGRAM=${program}
      -D CMAKE_C_COMPILER=${compiler}
      -D CMAKE_TOOLCHAIN_FILE=${toolchain}
      -D CMAKE_C_FLAGS=${sanitizer_flags}
      -D kelvo_ROOT=${tree}/${usr}
      -D CMAKE_FIND_ROOT_PATH_MODE_PACKAGE=NEVER)
  file(STRINGS ${stage}/build/CMakeCache.txt found REGEX "^kelvo_DIR:")
  expect_equal("The package found" "${found}" "kelvo_DIR:PATH=${tree}/${usr}lib/cmake/kelvo")
  run(${CMAKE_COMMAND} --build ${stage}/build)
  set(built ${stage}/build/client)
endif()

# The sanitizers' own library is not the first one here.
set(ENV{ASAN_OPTIONS} "$ENV{ASAN_OPTIONS}:verify_asan_link_order=0")
set(ENV{KELVO_SIM} clock=sleep)
set(environment LD_LIBRARY_PATH=${tree}/lib LD_PRELOAD=${tree}/lib/kelvo/libkelvo-sim.so)
if(emulator)
  list(TRANSFORM environment PREPEND "-E;")
  run(${emulator} ${environment} ${built})
else()
  run(${CMAKE_COMMAND} -E env ${environment} ${built})
endif()
function(expect_a_moved_focus)
  if(NOT output MATCHES "\nModule 8, program version [0-9]+: focus moved\\.\n$")
    message(FATAL_ERROR "The client printed\n${output}")
  endif()
endfunction()
expect_a_moved_focus()

# The launcher finds the preload library where both are installed. Under the emulator it cannot start programs.
if(NOT emulator)
  set(ENV{LD_LIBRARY_PATH} ${tree}/lib)
  run(${tree}/bin/kelvo-sim run -- ${built})
  expect_a_moved_focus()
endif()
