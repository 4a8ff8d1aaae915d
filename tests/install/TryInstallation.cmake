# Installs into an empty folder, moves it, and works with it as others do, who have nothing else: builds the examples,
# runs them, and asks pkg-config. The examples are taken from the installed documents.
cmake_minimum_required(VERSION 3.25)

# run(PROGRAM ARGUMENT...): fails the test with what the command printed; OUTPUT holds that otherwise.
macro(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE code OUTPUT_VARIABLE OUTPUT ERROR_VARIABLE errors)
  if(NOT code EQUAL 0)
    string(JOIN " " command ${ARGN})
    message(FATAL_ERROR "${command}\nended with ${code}:\n${OUTPUT}${errors}")
  endif()
endmacro()

function(expect text pattern what)
  if(NOT text MATCHES "${pattern}")
    message(FATAL_ERROR "${what}: \"${pattern}\" is not in\n${text}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)
set(MOVED ${WORK}/moved)
file(RENAME ${WORK}/installed ${MOVED})
set(LIBRARIES ${MOVED}/${LIBDIR}/hvxupgrade)
set(PROGRAM ${MOVED}/bin/hvxupgrade)

foreach(file share/man/man1/hvxupgrade.1 share/man/man5/hvxdoc.5 share/hvxupgrade/schemas/report.schema.json
             share/bash-completion/completions/hvxupgrade share/zsh/site-functions/_hvxupgrade
             share/doc/hvxupgrade/README.md share/doc/hvxupgrade/docs/embedding.md)
  if(NOT EXISTS ${MOVED}/${file})
    message(FATAL_ERROR "${file} is not installed")
  endif()
endforeach()

# Who reads the documents follows their links.
if(INTERPRETER)
  run(${INTERPRETER} ${SOURCE}/scripts/check-links ${MOVED}/share/doc/hvxupgrade)
endif()

# Nothing names the folder that it was built or installed in. What is for a debugger may.
if(BUILD_TYPE STREQUAL "Release")
  set(which -rlF)
else()
  set(which -rIlF)
endif()
execute_process(COMMAND grep ${which} -e ${SOURCE}/ -e ${BUILD}/ ${MOVED} OUTPUT_VARIABLE naming)
if(naming)
  message(FATAL_ERROR "These name the folder of the build:\n${naming}")
endif()

# The plug-in, and its own tests, which run the installed program.
set(EXAMPLES ${WORK}/outside)
file(COPY ${MOVED}/share/doc/hvxupgrade/examples/ DESTINATION ${EXAMPLES})
foreach(example plugin program)
  run(${CMAKE_COMMAND} -S ${EXAMPLES}/${example} -B ${WORK}/${example} -G Ninja -D CMAKE_PREFIX_PATH=${MOVED}
      -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_CXX_FLAGS=-Werror)
  run(${CMAKE_COMMAND} --build ${WORK}/${example})
endforeach()
run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK}/plugin --output-on-failure)
set(PLUGIN ${WORK}/plugin/libAcmeUpgrades.so)
set(ENV{PKG_CONFIG_PATH} ${MOVED}/${LIBDIR}/pkgconfig)
run(${PKG_CONFIG} --cflags --libs hvxupgrade-extension)
separate_arguments(flags UNIX_COMMAND "${OUTPUT}")
# Flags of one compiler may mean nothing to another.
set(compilers ${COMPILER})
find_program(CLANG clang++)
if(CLANG)
  list(APPEND compilers ${CLANG})
endif()
foreach(compiler IN LISTS compilers)
  cmake_path(GET compiler FILENAME name)
  set(plugin ${WORK}/libAcmeBy-${name}.so)
  run(${compiler} -std=c++20 -shared -fPIC ${EXAMPLES}/plugin/AcmeBoltUpgrade.cpp
      ${EXAMPLES}/plugin/AcmeUpgradeLibrary.cpp -o ${plugin} ${flags})
  run(${PROGRAM} --library ${plugin} identifiers AcmeBoltStrengths)
  list(APPEND PLUGINS_BY_HAND ${plugin})
endforeach()

# Both libraries in one run; the plug-in adds to the installed one.
set(BOTH ${PROGRAM} --library ${PLUGIN})
file(READ ${EXAMPLES}/bolted_bracket.hvxdoc bracket)
string(REPLACE "\n{\"id\":1," "\n{\"id\":99999,\"type\":\"AcmeBoltLT\",\"attributes\":{\"DiameterMm\":8.0}}\n{\"id\":1,"
       bracket "${bracket}")
string(REGEX MATCH "\"features\":([0-9]+)" count "${bracket}")
math(EXPR more "${CMAKE_MATCH_1} + 1")
string(REPLACE "${count}" "\"features\":${more}" bracket "${bracket}")
file(WRITE ${WORK}/bolt_of_bracket.hvxdoc "${bracket}")
run(${BOTH} upgrade ${WORK}/bolt_of_bracket.hvxdoc -o ${WORK}/both.hvxdoc)
file(READ ${WORK}/both.hvxdoc upgraded)
expect("${upgraded}" "\"id\":99999,\"type\":\"AcmeBoltLT\",\"attributes\":{\"Diameter\":0.008}" "the bolt")
expect("${upgraded}" "\"UpgradeToElemType\".*\"AcmeBoltStrengths\"" "the upgrades")
expect("${upgraded}" "\"libraries\":\\[{\"name\":\"AcmeUpgrades\",\"version\":\"1.0\"," "the library of the header")
run(${BOTH} status --check ${WORK}/both.hvxdoc)
# The same from a folder; and without the plug-in nothing is pending.
file(COPY ${PLUGIN} DESTINATION ${WORK}/plugins)
set(ENV{HVXUPGRADE_PLUGINS} ${WORK}/plugins)
run(${PROGRAM} status --check ${WORK}/both.hvxdoc)
if(OUTPUT MATCHES "unknown")
  message(FATAL_ERROR "the plug-in of the folder is not used:\n${OUTPUT}")
endif()
unset(ENV{HVXUPGRADE_PLUGINS})
run(${PROGRAM} status --check ${WORK}/both.hvxdoc)
expect("${OUTPUT}" "AcmeUpgrades 1.0, which is not loaded" "what is told without the plug-in")

# The Python module finds the library and what belongs to it, from wherever it is run.
if(PYTHON)
  file(WRITE ${WORK}/upgrade.py "import sys, hvxupgrade\nprint(len(hvxupgrade.upgrade_file(*sys.argv[1:]).identifiers))\n")
  run(${CMAKE_COMMAND} -E env PYTHONPATH=${MOVED}/${PYTHON_FOLDER} PYTHONDONTWRITEBYTECODE=1
      ${PYTHON} ${WORK}/upgrade.py ${EXAMPLES}/bolted_bracket.hvxdoc ${WORK}/python.hvxdoc)
  expect("${OUTPUT}" "^66\n$" "what Python prints")
  run(${PROGRAM} check ${WORK}/python.hvxdoc)
endif()

# The program, built with the CMake package and with pkg-config. It knows the interface alone, and needs nothing else.
run(${PKG_CONFIG} --modversion hvxupgrade-host hvxupgrade-extension hvxupgrade-standalone)
expect("${OUTPUT}" "^${VERSION}\n${VERSION}\n${VERSION}\n$" "the versions")
run(${PKG_CONFIG} --cflags --libs hvxupgrade-standalone)
if(OUTPUT MATCHES "fmt|/host|/extension")
  message(FATAL_ERROR "Programs are built with more than the interface: ${OUTPUT}")
endif()
separate_arguments(flags UNIX_COMMAND "${OUTPUT}")
run(${COMPILER} -std=c++20 -Wall -Wextra -Werror ${EXAMPLES}/program/Approve.cpp -o ${WORK}/approve ${flags})
foreach(program ${WORK}/program/approve ${WORK}/approve)
  file(REMOVE ${WORK}/approved.hvxdoc)
  run(${program} ${EXAMPLES}/bolted_bracket.hvxdoc ${WORK}/approved.hvxdoc)
  expect("${OUTPUT}" "^66 upgrades, 0 failures\n" "what the program prints")
  file(READ ${WORK}/approved.hvxdoc approved)
  expect("${approved}" "\"Approved\":true" "the result of the program")
  run(${PROGRAM} check ${WORK}/approved.hvxdoc)
endforeach()

# Every installed header finds what it includes, and says nothing to those who ask for all warnings.
file(GLOB_RECURSE headers RELATIVE ${MOVED}/include ${MOVED}/include/hvxupgrade/*.h)
list(TRANSFORM headers REPLACE "^hvxupgrade/(host|extension|testing)/" "")
list(TRANSFORM headers REPLACE "(.+)" "#include \"\\1\"\n")
list(JOIN headers "" headers)
file(WRITE ${WORK}/Headers.cpp "${headers}")
run(${PKG_CONFIG} --cflags hvxupgrade-extension hvxupgrade-standalone)
separate_arguments(flags UNIX_COMMAND "${OUTPUT}")
run(${COMPILER} -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Werror
    ${flags} -I${MOVED}/include/hvxupgrade/testing ${WORK}/Headers.cpp)

# A plug-in asks the host for nothing but what host/ declares, and shows nothing but its entries; the host shows nothing
# but what is its own.
foreach(library ${LIBRARIES}/libHVXUpgradeComponents.so ${PLUGIN} ${PLUGINS_BY_HAND})
  run(${NM} -DC --undefined-only ${library})
  if(OUTPUT MATCHES "standalone::[^\n]*")
    message(FATAL_ERROR "${library} asks for ${CMAKE_MATCH_0}")
  endif()
  run(${NM} -DC --defined-only --format=just-symbols ${library})
  string(REGEX REPLACE "(HVXGetUpgradeLibrary|CreateTIE|[a-z ]*HVXGenericUpgrades|[^\n]*std::)[^\n]*\n" "" others "${OUTPUT}")
  if(others)
    message(FATAL_ERROR "${library} shows as well:\n${others}")
  endif()
endforeach()
run(${NM} -DC --defined-only --format=just-symbols ${LIBRARIES}/libvlm_standalone.so.1.0)
string(REGEX REPLACE "([a-z ]* for )?(VLM|HVX|hvxupgrade::|standalone::)[^\n]*\n" "" others "${OUTPUT}")
if(others)
  message(FATAL_ERROR "libvlm_standalone.so shows as well:\n${others}")
endif()
