# The shared object PLUGIN has no GNU unique symbol: one would keep it loaded for good.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} ${PLUGIN} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
if(NOT symbols MATCHES "PluginReader")
  message(FATAL_ERROR "${NM} does not see what is in ${PLUGIN}")
endif()
string(REGEX MATCHALL "[0-9a-f]+ u [^\n]*" unique "${symbols}")
if(unique)
  string(REPLACE ";" "\n" unique "${unique}")
  message(FATAL_ERROR "unique symbols:\n${unique}")
endif()
