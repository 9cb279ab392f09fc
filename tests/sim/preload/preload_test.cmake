# Programs that know nothing of the simulated camera, run under it. Each test is one case of this script.
#
#   cmake -DCASE=... -DDEMO=... -DHEAD_DEMO=... -DPROBE=... -DOTHER=... -DREMOVE=... -DPRELOAD=... -DEMULATOR=... -DNM=... -DFOLDER=... -P this
cmake_minimum_required(VERSION 3.25)

# The preload library comes before the sanitizer's own.
set(ENV{ASAN_OPTIONS} "$ENV{ASAN_OPTIONS}:verify_asan_link_order=0")
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})

# Runs a command with or without the camera; the outcome is in result, output and errors.
macro(run_bare)
  execute_process(COMMAND ${EMULATOR} ${ARGV} WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
endmacro()
macro(run settings)
  if("${settings}" STREQUAL "")
    unset(ENV{KELVO_SIM})
  else()
    set(ENV{KELVO_SIM} "${settings}")
  endif()
  if(EMULATOR)
    execute_process(COMMAND ${EMULATOR} -E LD_PRELOAD=${PRELOAD} ${ARGN} WORKING_DIRECTORY ${FOLDER}
      RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  else()
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_PRELOAD=${PRELOAD} ${ARGN}
      WORKING_DIRECTORY ${FOLDER}
      RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  endif()
endmacro()

macro(fail reason)
  message(FATAL_ERROR "${reason}\nresult: ${result}\noutput:\n${output}\nerrors:\n${errors}")
endmacro()
macro(expect_result wanted)
  if(NOT result STREQUAL "${wanted}")
    fail("The result must be ${wanted}.")
  endif()
endmacro()
macro(expect_equal name wanted)
  if(NOT "${${name}}" STREQUAL "${wanted}")
    fail("The ${name} must be:\n${wanted}")
  endif()
endmacro()
# Each text must stand at the beginning of a line.
macro(expect_lines name)
  foreach(line ${ARGN})
    string(FIND "\n${${name}}" "\n${line}" place)
    if(place EQUAL -1)
      fail("The ${name} must have the line:\n${line}")
    endif()
  endforeach()
endmacro()
macro(expect_no name text)
  string(FIND "${${name}}" "${text}" place)
  if(NOT place EQUAL -1)
    fail("The ${name} must not have: ${text}")
  endif()
endmacro()
macro(expect_reports wanted)
  string(REGEX MATCHALL "Simulated camera\n" reports "${errors}")
  list(LENGTH reports count)
  if(NOT count EQUAL ${wanted})
    fail("There must be ${wanted} reports.")
  endif()
endmacro()

# An attempt is 1.202 s of waits, 24 frames of 40 us, and 8 us for each byte of its images: 35448 for DE015,
# 36808 for DF033, 34808 for T5391.
function(case_demo_of_all_modules)
  run("clock=sleep" ${DEMO})
  expect_result(0)
  expect_lines(output
    "de015: booting"
    "de015: result 0, variant 7, program version 0107"
    "df033: result 0, variant 8, program version 0208"
    "t5391: result 0, variant 9, program version 0309"
    "  module  boot             variant  version   moves"
    "  de015   ok                     7  0107      zoom 1 moved, zoom 2 moved, focus moved\n"
    "  df033   ok                     8  0208      zoom 1 moved, zoom 3 moved, focus moved\n"
    "  t5391   ok                     9  0309      zoom 1 moved, focus moved\n")
  expect_no(output "Addr:")
  expect_lines(errors
    "  1     DE015   0107     1         runs     1.486 s    0\n"
    "  2     DF033   0208     1         runs     1.497 s    0\n"
    "  3     T5391   0309     1         runs     1.481 s    0\n"
    "  1     1        0x21    CORVO_PROGRAM_DATA_DE015   50EE9858           intact\n"
    "  2     1        0x22    CORVO_PROGRAM3_DATA_DF033  BF9B8238           intact\n"
    "  3     1        0x23    CORVO_PROGRAM2_DATA_T5391  01911A0B           intact\n"
    "  1     zoom 1         +250      250      steps\n"
    "  1     zoom 2         +2000     2000     1/8 steps\n"
    "  1     focus          +2000     2000     1/8 steps\n"
    "  2     zoom 1         +250      250      steps\n"
    "  2     zoom 3         +250      250      steps\n"
    "  2     focus          +2000     2000     1/8 steps\n"
    "  3     zoom 1         +500      500      1/2 steps\n"
    "  3     focus          +250      250      steps\n"
    "  1     between        0        0       off\n"
    "  2     on             0        0       off\n"
    "  3     off            0        0       off\n"
    "  protocol violations: 0\n")
  expect_no(errors "NOT INTACT")
  expect_reports(1)
endfunction()

function(case_demo_of_one_module)
  run("clock=sleep" ${DEMO} df033)
  expect_result(0)
  expect_lines(errors "  1     DF033   0208     1         runs     1.497 s    0\n")
  expect_no(errors "DE015")
endfunction()

function(case_demo_verbose)
  run("clock=sleep" ${DEMO} --verbose t5391)
  expect_result(0)
  expect_lines(output "Write PLL Mode Register\n" "Addr:f5 0x00 0x00 0x00 0x00 0x00 \n" "Ver:00 00 03 09 \n"
    "t5391: result 0, variant 9, program version 0309\n")
endfunction()

function(case_demo_of_a_corrupt_download)
  run("clock=sleep corrupt=1" ${DEMO} df033)
  expect_result(1)
  expect_lines(output
    "df033: result 1, variant 8, program version 0208"
    "  df033   checks failed          8  0208      zoom 1 moved, zoom 3 moved, focus moved\n")
  # Ten attempts of 23 frames and a second each, and the start.
  expect_lines(errors
    "  1     DF033   0208     10        runs     24.973 s   0\n"
    "  1     1        0x21    CORVO_PROGRAM_DATA_DF033   "
    "  1     10       0x21    CORVO_PROGRAM_DATA_DF033   A7980342           intact\n"
    "  1     10       0x23    CORVO_PROGRAM2_DATA_DF033  01911A0B           intact\n"
    "  protocol violations: 0\n")
  string(REGEX MATCHALL "NOT INTACT" corrupt "${errors}")
  if(NOT corrupt STREQUAL "NOT INTACT")
    fail("One download must be listed that is not intact.")
  endif()
endfunction()

function(case_demo_with_a_fault)
  run("clock=sleep,fault=spi:frame=payload:nth=2:flip=9.1" ${DEMO} df033)
  expect_result(1)
  string(REGEX MATCHALL "NOT INTACT" corrupt "${errors}")
  if(NOT corrupt STREQUAL "NOT INTACT")
    fail("One download must be listed that is not intact.")
  endif()
endfunction()

function(case_demo_that_a_fault_kills)
  run("clock=sleep fault=pt5111:kill" ${DEMO} de015)
  if(result EQUAL 0)
    fail("The program must be killed.")
  endif()
  expect_no(output "de015: result")
  expect_reports(0)
endfunction()

function(case_demo_with_a_wrong_fault)
  run("clock=sleep fault=spi" ${DEMO} df033)
  expect_result(2)
  expect_equal(output "")
  expect_equal(errors "KELVO_SIM: \"fault\" cannot be \"spi\": it has no effect: add one of error, flip, busy, reset, missing, kill\n")
endfunction()

function(case_demo_in_real_time)
  run("clock=real" ${DEMO} t5391)
  expect_result(0)
  expect_lines(errors
    "  1     T5391   0309     1         runs     "
    "  1     zoom 1  +500      500      1/2 steps\n"
    "  1     focus   +250      250      steps\n"
    "  protocol violations: 0\n")
endfunction()

function(case_head_demo_of_a_vetra_head)
  run("clock=sleep head=vetra" ${HEAD_DEMO})
  expect_result(0)
  expect_lines(output
    "Vetra head, pan from 10000 to 55000, tilt from 20000 to 45000\n"
    "   0.00 s  32768  32767  begin\n")
  expect_no(output "NOT")
  expect_lines(errors
    "  head  family  position  count  limits  state\n"
    "  pan   Vetra   32768     9000   on      at rest\n"
    "  tilt  Vetra   32767     12500  on      at rest\n"
    "  protocol violations: 0\n")
endfunction()

function(case_head_demo_of_a_tasmere_head)
  run("clock=sleep head=tasmere" ${HEAD_DEMO})
  expect_result(0)
  expect_lines(output
    "Tasmere head, pan from 10000 to 55000, tilt from 20000 to 45000\n"
    "   1.05 s  20000  40000  to 20000 and 40000 at half speed: reached\n")
  expect_no(output "NOT")
  expect_no(output "TServomotor")
  expect_lines(errors
    "  pan   Tasmere  32768     32768  on      at rest\n"
    "  tilt  Tasmere  32768     32768  on      at rest\n"
    "  protocol violations: 0\n")
endfunction()

function(case_head_demo_in_real_time)
  run("clock=real head=vetra" ${HEAD_DEMO})
  expect_result(0)
  expect_lines(errors "  protocol violations: 0\n")
endfunction()

function(case_head_demo_verbose)
  run("clock=sleep" ${HEAD_DEMO} --verbose)
  expect_result(0)
  expect_lines(output "Motor Type[0]:0x0 Type[1]:0x0\n" "TServomotor=2\n")
endfunction()

function(case_head_demo_without_a_camera)
  run_bare(${HEAD_DEMO})
  expect_result(3)
  expect_equal(output "")
  expect_equal(errors "${HEAD_DEMO}: no head answers on /dev/i2c-2: run it on the camera, or under the simulated one with LD_PRELOAD=libkelvo-sim.so\n")
endfunction()

function(case_head_demo_with_wrong_arguments)
  foreach(argument nonsense --nonsense)
    run("clock=sleep" ${HEAD_DEMO} ${argument})
    expect_result(2)
    expect_equal(output "")
    expect_reports(0)
  endforeach()
endfunction()

function(case_demo_without_a_camera)
  run_bare(${DEMO})
  expect_result(3)
  expect_equal(output "")
  expect_equal(errors "${DEMO}: cannot open /dev/spi_renesas (No such file or directory): run it on the camera, or under the simulated one with LD_PRELOAD=libkelvo-sim.so\n")
endfunction()

function(case_demo_with_wrong_arguments)
  foreach(argument nonsense --nonsense)
    run("clock=sleep" ${DEMO} ${argument})
    expect_result(2)
    expect_equal(output "")
    string(FIND "${errors}" "usage: ${DEMO} [--verbose] [de015|df033|t5391]...\n" place)
    if(place EQUAL -1)
      fail("There must be a usage line.")
    endif()
    expect_reports(0)
  endforeach()
endfunction()

function(case_home_and_check_of_the_stabiliser)
  run("clock=sleep files=kept" ${HOME_AND_CHECK} de015)
  expect_result(0)
  expect_lines(output
    "  focus backward until it is interrupted               ok\n"
    "  100 steps back: counter 2600, must be 2600           ok\n"
    "  quality check: result 0, must be 0                   ok\n"
    "  /bin/OIS_S_Cali.dat   record  controller\n"
    "  Hall offset X         07D4    07D4\n"
    "  gyro noise Y          0006    0006\n"
    "de015: all is as it must be\n")
  expect_no(output "State:")
  # Home is where the poll finds the focus that has left the interrupter, whose edge is at -4000.
  expect_lines(errors
    "  1     focus          -2393     2600     1/8 steps\n"
    "  3     DE015   0107     1         runs     1.486 s    0\n"
    "  protocol violations: 0\n")
  foreach(place mnt/nand tmp bin)
    file(SIZE ${FOLDER}/kept/${place}/OIS_S_Cali.dat size)
    if(NOT size EQUAL 60)
      fail("The record in ${place} must have 60 bytes.")
    endif()
  endforeach()
endfunction()

function(case_home_and_check_of_the_iris)
  run("clock=sleep" ${HOME_AND_CHECK} --verbose df033)
  expect_result(0)
  expect_lines(output
    "State:0 0 0 1\nState:0 0 0 4\n"
    "Error Code:00 00 00 00\nPola 0xa1:00 00 00 02\n"
    "  sine                  0212    0212\n"
    "df033: all is as it must be\n")
  expect_lines(errors "  protocol violations: 0\n")
endfunction()

function(case_home_and_check_without_a_quality_check)
  run("clock=sleep" ${HOME_AND_CHECK} t5391)
  expect_result(0)
  expect_lines(output "  100 steps back                                       ok\nt5391: all is as it must be\n")
  expect_lines(errors "  1     focus   -399      1200     steps\n" "  protocol violations: 0\n")
endfunction()

function(case_home_and_check_of_a_corrupt_download)
  run("clock=sleep corrupt=1" ${HOME_AND_CHECK} t5391)
  expect_result(1)
  expect_equal(output "t5391\n  boot                                                 FAILED\nt5391: something is not as it must be\n")
endfunction()

function(case_home_and_check_with_wrong_arguments)
  foreach(arguments nonsense --nonsense "de015;df033")
    run("clock=sleep" ${HOME_AND_CHECK} ${arguments})
    expect_result(2)
    expect_equal(output "")
  endforeach()
  run_bare(${HOME_AND_CHECK} de015)
  expect_result(3)
endfunction()

function(case_mistyped_setting)
  run("clock=sleep corupt=1" ${DEMO})
  expect_result(2)
  expect_equal(output "")
  expect_equal(errors "KELVO_SIM: there is no setting \"corupt\": there are name, clock, files, corrupt, head, module, seed, fault, report, report-file, real, violations\n")
endfunction()

function(case_mistyped_value)
  run("clock=sloop" ${DEMO})
  expect_result(2)
  expect_equal(output "")
  expect_equal(errors "KELVO_SIM: \"clock\" cannot be \"sloop\": it takes real, sleep, or a number from 0.1 to 1000\n")
endfunction()

function(case_files_folder_that_cannot_be_used)
  file(WRITE ${FOLDER}/file "a file")
  run("files=${FOLDER}/file/folder" ${PROBE} return)
  expect_result(2)
  expect_equal(errors "KELVO_SIM: the folder \"${FOLDER}/file/folder\" cannot be used: Not a directory\n")
endfunction()

function(case_files_folder_is_kept)
  run("files=made/here" ${PROBE} return)
  expect_result(0)
  file(SIZE ${FOLDER}/made/here/bin/DC_S_Cali_T5391.dat size)
  if(NOT size EQUAL 24)
    fail("The default record must have 24 bytes.")
  endif()
endfunction()

function(case_private_folder_is_removed)
  set(ENV{TMPDIR} ${FOLDER})
  run("clock=sleep" ${DEMO} t5391)
  expect_result(0)
  file(GLOB left ${FOLDER}/*)
  if(NOT left STREQUAL "")
    fail("There must be nothing left: ${left}")
  endif()
endfunction()

function(case_settings_are_not_needed)
  run("" ${PROBE} return)
  expect_result(0)
  expect_reports(1)
endfunction()

function(case_report_at_every_ending)
  foreach(ending return exit elsewhere)
    run("clock=sleep" ${PROBE} ${ending})
    expect_result(0)
    expect_equal(errors "\nSimulated camera\n\n  time simulated: 0.000 s\n  protocol violations: 0\n")
    expect_equal(output "")
  endforeach()
endfunction()

function(case_devices_have_no_bytes)
  run("clock=sleep" ${PROBE} bytes)
  expect_result(0)
  expect_lines(errors "  protocol violations: 1\n")
endfunction()

function(case_wait_for_nobody_goes_by_the_clock)
  run("clock=sleep" ${PROBE} nobody)
  expect_result(0)
  expect_lines(errors "  time simulated: 2.000 s\n")
endfunction()

function(case_no_report_from_a_forked_process)
  run("clock=sleep" ${PROBE} fork)
  expect_result(0)
  expect_reports(1)
endfunction()

function(case_no_report_without_a_camera_in_use)
  run("clock=sleep" ${PROBE} idle)
  expect_result(0)
  expect_equal(errors "")
endfunction()

function(case_no_report_when_none_is_wanted)
  run("clock=sleep report=none" ${PROBE} return)
  expect_result(0)
  expect_equal(errors "")
endfunction()

function(case_report_in_a_file)
  # Where the file lies is settled at the start: the program goes elsewhere.
  run("clock=sleep report-file=report.txt" ${PROBE} elsewhere)
  expect_result(0)
  expect_equal(errors "")
  file(READ ${FOLDER}/report.txt report)
  expect_equal(report "\nSimulated camera\n\n  time simulated: 0.000 s\n  protocol violations: 0\n")
endfunction()

function(case_report_that_cannot_be_written)
  run("clock=sleep report-file=no/such/folder" ${PROBE} return)
  expect_result(0)
  expect_lines(errors "KELVO_SIM: cannot write ${FOLDER}/no/such/folder\n" "  protocol violations: 0\n")
  expect_reports(1)
endfunction()

# A name that no other run of the tests has, and a place for what belongs to the camera.
macro(name_a_camera)
  string(RANDOM LENGTH 12 camera)
  set(camera "preload-${camera}")
  set(ENV{XDG_RUNTIME_DIR} ${FOLDER})
endmacro()
macro(remove_the_camera)
  run_bare(${REMOVE} ${camera})
  expect_result(0)
  file(GLOB left ${FOLDER}/*)
  if(NOT left STREQUAL "")
    fail("There must be nothing left: ${left}")
  endif()
endmacro()

function(case_shared_camera_one_program_after_the_other)
  name_a_camera()
  run("name=${camera} clock=sleep" ${DEMO} df033)
  expect_result(0)
  expect_equal(errors "")
  run("name=${camera} report=text" ${OTHER} 8 0)
  expect_result(0)
  expect_lines(output "version 0000, zoom 1 at 250, focus at 2000\n")
  run("name=${camera} report=text" ${OTHER} 8 1)
  expect_result(0)
  expect_lines(output "version 0208, zoom 1 at 500, focus at 2000\n")
  expect_lines(errors
    "Simulated camera ${camera}\n"
    "  1     DF033   0208     1         runs     1.497 s    0\n"
    "  protocol violations: 0\n")
  remove_the_camera()
endfunction()

function(case_shared_camera_two_programs_at_once)
  name_a_camera()
  run("name=${camera} clock=sleep" ${DEMO} t5391)
  expect_result(0)
  set(wrap ${CMAKE_COMMAND} -E env LD_PRELOAD=${PRELOAD})
  if(EMULATOR)
    set(wrap ${EMULATOR} -E LD_PRELOAD=${PRELOAD})
  endif()
  # Commands of one call run side by side.
  execute_process(COMMAND ${wrap} ${OTHER} 9 400 COMMAND ${wrap} ${OTHER} 9 400
    COMMAND ${wrap} ${OTHER} 9 400 WORKING_DIRECTORY ${FOLDER}
    RESULTS_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  expect_result("0;0;0")
  run("name=${camera} report=text" ${OTHER} 9 1)
  expect_lines(errors "  protocol violations: 0\n")
  remove_the_camera()
endfunction()

function(case_shared_camera_with_other_settings)
  name_a_camera()
  run("name=${camera} clock=sleep" ${PROBE} return)
  expect_result(0)
  run("name=${camera} clock=2" ${PROBE} return)
  expect_result(2)
  expect_equal(errors "KELVO_SIM: camera \"${camera}\" was made with clock=sleep, not clock=2: leave clock away, or remove the camera first\n")
  remove_the_camera()
endfunction()

function(case_shared_camera_of_an_impossible_name)
  run("name=a/b" ${PROBE} return)
  expect_result(2)
  expect_equal(errors "KELVO_SIM: \"name\" cannot be \"a/b\": it takes up to 32 letters, digits, - and _\n")
endfunction()

# Whatever else it exported would get in the way of the program.
function(case_exports_the_intercepted_names_alone)
  execute_process(COMMAND ${NM} -D --defined-only --format=just-symbols ${PRELOAD}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  expect_result(0)
  string(REGEX REPLACE "\n$" "" output "${output}")
  string(REPLACE "\n" ";" output "${output}")
  list(SORT output)
  set(names
    __fxstatat __fxstatat64 __lxstat __lxstat64 __open64_2 __open_2 __openat64_2 __openat_2 __poll_chk
    __ppoll_chk __pread64_chk __pread_chk __read_chk __readlink_chk __readlinkat_chk __realpath_chk
    __xmknod __xmknodat __xstat __xstat64 access canonicalize_file_name chmod chown clock_nanosleep close
    close_range closefrom copy_file_range creat creat64 dup dup2 dup3 eaccess euidaccess faccessat
    fchmodat fchownat fclose fcntl fcntl64 fdatasync fopen fopen64 freopen freopen64 fstatat fstatat64
    fsync ftok futimesat getxattr inotify_add_watch ioctl lchmod lchown lgetxattr link linkat listxattr
    llistxattr lremovexattr lsetxattr lstat lstat64 lutimes mkdir mkdirat mkfifo mkfifoat mknod mknodat
    nanosleep open open64 openat openat64 pathconf poll popen ppoll pread pread64 preadv preadv2 preadv64
    preadv64v2 pselect pwrite pwrite64 pwritev pwritev2 pwritev64 pwritev64v2 read readlink readlinkat
    readv realpath remove removexattr rename renameat renameat2 rmdir select semctl semget semop
    semtimedop sendfile sendfile64 setxattr sigtimedwait sleep splice stat stat64 statfs statfs64 statvfs
    statvfs64 statx symlink symlinkat sync syncfs system thrd_sleep truncate truncate64 unlink unlinkat
    usleep utime utimensat utimes write writev)
  list(SORT names)
  expect_equal(output "${names}")
endfunction()

cmake_language(CALL case_${CASE})
