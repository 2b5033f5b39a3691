# The switch library that the tool is linked with, as datacache::zovlib: a real one, or the simulated switch.
set(DATACACHE_SWITCH_LIBRARY "" CACHE FILEPATH "The switch library to link the tool with; empty: the simulated switch")
if(DATACACHE_SWITCH_LIBRARY)
  set(simulator_wanted ${DATACACHE_TESTS}) # the tests are about the simulated switch in any case
else()
  set(simulator_wanted ON)
endif()
option(DATACACHE_SIMULATOR "Build the simulated switch" ${simulator_wanted})

if(DATACACHE_TESTS AND NOT DATACACHE_SIMULATOR)
  message(FATAL_ERROR "The tests take the simulated switch: set DATACACHE_TESTS=OFF too.")
endif()

if(DATACACHE_SWITCH_LIBRARY)
  get_filename_component(switch_library "${DATACACHE_SWITCH_LIBRARY}" ABSOLUTE BASE_DIR ${CMAKE_BINARY_DIR})
  if(NOT EXISTS "${switch_library}" OR IS_DIRECTORY "${switch_library}")
    message(FATAL_ERROR "DATACACHE_SWITCH_LIBRARY: there is no file ${switch_library}. Give the path of the switch "
                        "library (.../libsomething.so), or set it to nothing for the simulated switch.")
  endif()
  add_library(datacache::zovlib SHARED IMPORTED GLOBAL)
  set_target_properties(datacache::zovlib PROPERTIES IMPORTED_LOCATION "${switch_library}")
elseif(DATACACHE_TOOL AND NOT DATACACHE_SIMULATOR)
  message(FATAL_ERROR "The tool has no switch library: set DATACACHE_SWITCH_LIBRARY to the path of one, or "
                      "DATACACHE_SIMULATOR=ON, or leave the tool out with DATACACHE_TOOL=OFF.")
endif()
