# Debian packages of what is installed, one for each component; scripts/package makes them. Only where the prefix is the
# one that packages have: other folders would be built into the program.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  return()
endif()

# The owner's name and address are to be filled in. Debian demands an address; this one can be nobody's.
set(HVX_MAINTAINER "Owner of hvxupgrade <owner@hvxupgrade.invalid>" CACHE STRING "Who is responsible for the packages")

# The libraries' package is named after what they belong to, with the numbers in the shared library's name: a program is
# built for one of these. The upgrade library and the data are without numbers in their names, so that only one version
# of the package can be installed.
set(HVX_INTERFACE ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(HVX_PACKAGE_OF_tool hvxupgrade)
set(HVX_PACKAGE_OF_libraries libhvxupgrade${HVX_INTERFACE})
set(HVX_PACKAGE_OF_development libhvxupgrade-dev)
set(HVX_PACKAGE_OF_python python3-hvxupgrade)
set(HVX_LIBRARIES "${HVX_PACKAGE_OF_libraries} (= ${PROJECT_VERSION})")

set(CPACK_COMPONENTS_ALL tool libraries development)

# What all packages are made of; the target of scripts/package.
add_custom_target(packaged DEPENDS hvxupgrade HVXUpgradeComponents HVXUpgradeExtension HVXUpgradeTesting)

set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME hvxupgrade)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${HVX_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ${HVX_PACKAGE_OF_tool})
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION science)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS ${HVX_LIBRARIES})
set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS "bash-completion, zsh")
set(CPACK_DEBIAN_TOOL_DESCRIPTION "upgrade of finite-element analysis documents
Analysis documents of older releases of the Halvex workbench are brought up to
the current data model: one document or a hundred thousand, without the
workbench. Every change is recorded with the upgrade that made it, and the
analysis is compared before and after.

This package contains the program, its manual pages, schemas of what it
prints, scripts for clusters, documents to read, and examples.")

set(CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME ${HVX_PACKAGE_OF_libraries})
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_PROVIDES libhvxupgrade)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONFLICTS libhvxupgrade)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_REPLACES libhvxupgrade)
set(CPACK_DEBIAN_LIBRARIES_DESCRIPTION "upgrade of finite-element analysis documents (libraries)
Analysis documents of older releases of the Halvex workbench are brought up to
the current data model, without the workbench.

This package contains the host that documents are read, changed and written
with, the library of upgrades, and what they need: catalogs, messages, and
explanations of the upgrades.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${HVX_PACKAGE_OF_development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# The CMake package has the program among its targets, for tests.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${HVX_LIBRARIES}, hvxupgrade (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "g++ (>= 4:12), cmake (>= 3.25), pkg-config, libgtest-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "upgrade of finite-element analysis documents (development)
Analysis documents of older releases of the Halvex workbench are brought up to
the current data model, without the workbench.

This package contains what upgrades and programs of others are built with:
headers, the dispatch of upgrade libraries, what tests of upgrades are written
with, and files for CMake and pkg-config.")

if(HVX_PYTHON AND EXISTS ${PROJECT_SOURCE_DIR}/python)
  list(APPEND CPACK_COMPONENTS_ALL python)
  add_dependencies(packaged hvx_python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME ${HVX_PACKAGE_OF_python})
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst
                                                ${CMAKE_CURRENT_SOURCE_DIR}/debian/prerm)
  # The module is loaded by one version of Python only: Debian's, that it was built with.
  math(EXPR HVX_NEXT_PYTHON "${Python_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${HVX_LIBRARIES}, python3 (>= 3.${Python_VERSION_MINOR}~), \
python3 (<< 3.${HVX_NEXT_PYTHON})")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS python3-numpy)
  set(CPACK_DEBIAN_PYTHON_DESCRIPTION "upgrade of finite-element analysis documents (Python)
Analysis documents of older releases of the Halvex workbench are brought up to
the current data model, without the workbench.

This package contains the module for Python 3.")
endif()

# What was built with the libraries, and is packaged, depends on a package that has them.
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/shlibs
     "libvlm_standalone ${HVX_INTERFACE} ${HVX_PACKAGE_OF_libraries} (>= ${HVX_INTERFACE})\n")
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_BINARY_DIR}/shlibs)

# What Debian wants of files that are installed without a package as they are in the source tree.
configure_file(Debianise.cmake.in Debianise.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/Debianise.cmake)
include(CPack)
