# Makes targets of the layers that layers.txt lists.

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/layers.txt)

# Sets OUT to the directories of the library's layers, bottom to top.
function(tesmar_layers out)
  file(STRINGS ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/layers.txt lines REGEX "^tesmar/[^.]*:")
  list(TRANSFORM lines REPLACE ":.*" "")
  if(NOT TESMAR_SDL) # for which alone the bridge to screen readers exists so far
    list(REMOVE_ITEM lines tesmar/platform/hosts/sdl tesmar/platform/access)
  endif()
  if(NOT TESMAR_QT6)
    list(REMOVE_ITEM lines tesmar/platform/hosts/qt)
  endif()
  set(${out} ${lines} PARENT_SCOPE)
endfunction()

# tesmar/platform/ui -> tesmar_ui
function(tesmar_layer_target out layer)
  string(REGEX REPLACE "^tesmar/(platform/)?" "tesmar_" target ${layer})
  string(REPLACE / _ target ${target})
  set(${out} ${target} PARENT_SCOPE)
endfunction()

# tesmar_layer([OWN_LIBRARY] [SOURCES...] [PRIVATELY libraries...])
# The layer of the current directory: a static library, later put whole into the one shared library,
# or with OWN_LIBRARY into a shared library of its own. Without sources it is headers alone.
function(tesmar_layer)
  cmake_parse_arguments(LAYER "OWN_LIBRARY" "" "SOURCES;PRIVATELY" ${ARGN})
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR
             BASE_DIRECTORY ${TESMAR_INCLUDE_DIR} OUTPUT_VARIABLE layer)
  tesmar_layer_target(name ${layer})

  file(STRINGS ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/layers.txt line REGEX "^${layer}:")
  string(REGEX MATCHALL "tesmar/[^ ]+" below ${line})
  list(REMOVE_AT below 0) # the layer itself
  list(FILTER below EXCLUDE REGEX "[.]h$") # single headers are no targets
  set(uses "")
  foreach(each ${below})
    tesmar_layer_target(target ${each})
    list(APPEND uses ${target})
  endforeach()

  if(NOT LAYER_SOURCES)
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${TESMAR_INCLUDE_DIR})
    return()
  endif()
  add_library(${name} STATIC ${LAYER_SOURCES})
  target_include_directories(${name} PUBLIC ${TESMAR_INCLUDE_DIR})
  target_link_libraries(${name} PUBLIC ${uses} PRIVATE ${LAYER_PRIVATELY})
  tesmar_warnings(${name})
  tesmar_hardening(${name})
  if(NOT LAYER_OWN_LIBRARY)
    set_property(GLOBAL APPEND PROPERTY TESMAR_CORE ${name})
  endif()
endfunction()

# tesmar_module(NAME SOURCES... USES libraries...)
# A part of the library that is loaded only when it is needed, because of the libraries that it uses.
# It is made beside the library itself: programs that contain layers instead look for it there too.
# The file is NAME-0.2.so, by the binary interface: a process that has another version of the library
# as well would otherwise give one the module of the other.
function(tesmar_module name)
  cmake_parse_arguments(MODULE "" "" "SOURCES;USES" ${ARGN})
  add_library(${name} MODULE ${MODULE_SOURCES})
  target_include_directories(${name} PRIVATE ${TESMAR_INCLUDE_DIR})
  target_link_libraries(${name} PRIVATE ${MODULE_USES})
  target_link_options(${name} PRIVATE LINKER:-z,relro,-z,now)
  set_target_properties(${name} PROPERTIES
    PREFIX "" OUTPUT_NAME ${name}-${TESMAR_COMPATIBLE} LIBRARY_OUTPUT_DIRECTORY ${TESMAR_MODULES_DIR})
  tesmar_warnings(${name})
  tesmar_hardening(${name})
  set_property(GLOBAL APPEND PROPERTY TESMAR_MODULES ${name})
endfunction()
