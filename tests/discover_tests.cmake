# SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
# SPDX-License-Identifier: MIT

# Tells ctest of a program's GoogleTest tests: all of one source file together, in one process, or each by itself.
# Starting a process takes longer than most unit tests do.
#
#   ulmaro_discover_tests(TARGET KIND [EACH] [TIMEOUT seconds] [ALONE file ...] [LONG test ...])
#
# Without EACH the tests of NAME_test.cpp are one test called KIND.NAME; what fails in it is in its output. With EACH
# every test is one of its own, called KIND.SUITE.TEST. Their labels are KIND and NAME, and "alone" where nothing runs
# beside them: ALONE lists suites or tests that measure time and bear no load. LONG lists what is begun first.
#
# The program lists its tests when ctest starts, if it is newer than the last list. A suite belongs to the file of its
# first test.

set(ULMARO_DISCOVER_TESTS ${CMAKE_CURRENT_LIST_FILE})

function(ulmaro_discover_tests target kind)
  cmake_parse_arguments(arg "EACH" "TIMEOUT" "ALONE;LONG" ${ARGN})
  set(list "${CMAKE_CURRENT_BINARY_DIR}/${target}_tests.cmake")
  file(GENERATE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${target}_include.cmake" CONTENT
"include([==[${ULMARO_DISCOVER_TESTS}]==])
ulmaro_include_tests([==[$<TARGET_FILE:${target}>]==] [==[${list}]==] [==[${CMAKE_CURRENT_BINARY_DIR}]==]
                     ${kind} \"${arg_EACH}\" \"${arg_TIMEOUT}\" \"${arg_ALONE}\" \"${arg_LONG}\")
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${CMAKE_CURRENT_BINARY_DIR}/${target}_include.cmake")
endfunction()

# ---- Run by ctest ----

# Adds a program's tests to ctest's. A program that was not built is a test that fails.
function(ulmaro_include_tests program list folder kind each timeout alone long)
  if(NOT EXISTS "${program}")
    get_filename_component(name "${program}" NAME)
    add_test(${name}_NOT_BUILT ${name}_NOT_BUILT)
    return()
  endif()
  foreach(source "${program}" "${ULMARO_DISCOVER_TESTS}" "${CMAKE_CURRENT_LIST_FILE}")
    if(NOT EXISTS "${list}" OR NOT "${list}" IS_NEWER_THAN "${source}")
      ulmaro_write_list("${program}" "${list}" "${folder}" "${kind}" "${each}" "${timeout}" "${alone}" "${long}")
      break()
    endif()
  endforeach()
  include("${list}")
endfunction()

# Asks the program for its tests and writes ctest's commands into the file `list`.
function(ulmaro_write_list program list folder kind each timeout alone long)
  set(json "${list}.json")
  execute_process(COMMAND "${program}" --gtest_list_tests "--gtest_output=json:${json}"
                  WORKING_DIRECTORY "${folder}" OUTPUT_VARIABLE said ERROR_VARIABLE said RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${program} lists no tests: ${status}\n${said}")
  endif()
  # Brackets, semicolons and backslashes mean something in lists, and nothing here.
  file(READ "${json}" text)
  string(REGEX REPLACE "[][;\\]" "" text "${text}")
  string(REPLACE "\n" ";" lines "${text}")
  # A suite's name stands before its tests, and a test's before its file.
  set(names "")
  foreach(line IN LISTS lines)
    if(line MATCHES "\"testsuite\":")
      set(suite "${name}")
      set(first TRUE)
    elseif(line MATCHES "\"name\": \"(.*)\"")
      set(name "${CMAKE_MATCH_1}")
    elseif(line MATCHES "([A-Za-z0-9_]+)_test\\.cpp\"")
      if(first)
        set(file "${CMAKE_MATCH_1}")
        list(APPEND names "${file}")
        string(APPEND filter_${file} "${suite}.*:")
        set(first FALSE)
      endif()
      list(APPEND tests_${file} "${suite}.${name}")
    endif()
  endforeach()
  list(REMOVE_DUPLICATES names)
  set(script "")
  foreach(file IN LISTS names)
    if(each)
      foreach(test IN LISTS tests_${file})
        ulmaro_add_command("${kind}.${test}" "${test}")
      endforeach()
    else()
      ulmaro_add_command("${kind}.${file}" "${filter_${file}}")
    endif()
  endforeach()
  file(WRITE "${list}" "${script}")
endfunction()

# Appends a test's commands to `script`.
macro(ulmaro_add_command test filter)
  set(labels "${kind};${file}")
  set(properties "")
  foreach(pattern IN LISTS alone)
    if("${test}" MATCHES "${pattern}")
      list(APPEND labels alone)
      set(properties " RUN_SERIAL TRUE")
    endif()
  endforeach()
  foreach(pattern IN LISTS long)
    if("${test}" MATCHES "${pattern}")
      string(APPEND properties " COST 1000")
    endif()
  endforeach()
  if(NOT "${timeout}" STREQUAL "")
    string(APPEND properties " TIMEOUT ${timeout}")
  endif()
  string(APPEND script "add_test([==[${test}]==] [==[${program}]==] [==[--gtest_filter=${filter}]==])\n"
                       "set_tests_properties([==[${test}]==] PROPERTIES WORKING_DIRECTORY [==[${folder}]==]"
                       " LABELS [==[${labels}]==]${properties})\n")
endmacro()
