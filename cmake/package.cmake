# The layers as they are shipped: one shared library, one more for each host that needs its own
# dependencies, their headers, and what find_package and pkg-config read.
include(CMakePackageConfigHelpers)

# The layers' object files rather than their archives: all that is in them is shipped. The archives
# follow only for the libraries that they use.
get_property(core GLOBAL PROPERTY TESMAR_CORE)
list(TRANSFORM core REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE core_objects)
add_library(tesmar SHARED ${core_objects})
target_link_libraries(tesmar PRIVATE ${core})
add_library(tesmar::tesmar ALIAS tesmar)

set(shipped tesmar)

# tesmar_host_library(NAME LAYER libraries...): the layer hosts/LAYER as a library beside the core. It
# uses the shared library; linking its own archive would bring the layers in twice.
function(tesmar_host_library name layer)
  add_library(tesmar_${name} SHARED $<TARGET_OBJECTS:tesmar_hosts_${layer}>)
  target_link_libraries(tesmar_${name} PUBLIC tesmar PRIVATE ${ARGN})
  set_target_properties(tesmar_${name} PROPERTIES EXPORT_NAME ${name} OUTPUT_NAME tesmar-${name})
  add_library(tesmar::${name} ALIAS tesmar_${name})
endfunction()

if(TESMAR_SDL)
  tesmar_host_library(sdl sdl PkgConfig::SDL2 ${CMAKE_DL_LIBS})
  list(APPEND shipped tesmar_sdl)
endif()

if(TESMAR_QT6)
  tesmar_host_library(qt6 qt Qt6::Widgets)
  list(APPEND shipped tesmar_qt6)
endif()

get_property(modules GLOBAL PROPERTY TESMAR_MODULES)
add_dependencies(tesmar ${modules})
install(TARGETS ${modules} DESTINATION ${CMAKE_INSTALL_LIBDIR}/tesmar-${TESMAR_COMPATIBLE})

set(exports ${PROJECT_BINARY_DIR}/exports.map)
configure_file(cmake/exports.map.in ${exports} @ONLY)
foreach(library ${shipped})
  set_target_properties(${library} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${TESMAR_COMPATIBLE} LINKER_LANGUAGE CXX
    # One library is installed beside the other, and their modules in a directory of this version.
    BUILD_RPATH "$ORIGIN;${TESMAR_MODULES_DIR}" INSTALL_RPATH "$ORIGIN;$ORIGIN/tesmar-${TESMAR_COMPATIBLE}")
  target_compile_features(${library} INTERFACE cxx_std_20)
  target_include_directories(${library} INTERFACE
    $<BUILD_INTERFACE:${TESMAR_INCLUDE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  # nodelete: libraries below keep pointers into this one, so it stays in memory once it is loaded.
  # Bsymbolic-functions: its calls of its own functions are bound when it is built, not at each start.
  target_link_options(${library} PRIVATE
    LINKER:-z,relro,-z,now,-z,nodelete,-Bsymbolic-functions
    LINKER:--version-script=${exports})
  set_target_properties(${library} PROPERTIES LINK_DEPENDS ${exports})
  if(NOT TESMAR_SANITIZE) # whose run-time functions come with the program
    target_link_options(${library} PRIVATE LINKER:--no-undefined)
  endif()
endforeach()

# Headers keep their places in the tree; those in a directory internal/ are not shipped.
file(GLOB_RECURSE headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS tesmar/*.h)
list(FILTER headers EXCLUDE REGEX /internal/)
if(NOT TESMAR_SDL)
  list(FILTER headers EXCLUDE REGEX /hosts/sdl/)
endif()
if(NOT TESMAR_QT6)
  list(FILTER headers EXCLUDE REGEX /hosts/qt/)
endif()
foreach(header ${headers})
  get_filename_component(directory ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${directory})
endforeach()

set(config_directory ${CMAKE_INSTALL_LIBDIR}/cmake/TESMAR)
install(TARGETS ${shipped} EXPORT tesmar)
install(EXPORT tesmar NAMESPACE tesmar:: FILE TESMARConfig.cmake DESTINATION ${config_directory})
write_basic_package_version_file(TESMARConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/TESMARConfigVersion.cmake DESTINATION ${config_directory})

# The installed tree can be moved: its root is relative to the .pc file.
file(RELATIVE_PATH path_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
foreach(library ${shipped})
  string(REPLACE _ - name ${library})
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
