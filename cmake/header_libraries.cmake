# KV_Schau's libraries for a cross-build. Debian's packages of them are for the building machine, but their headers
# serve any: they are found through a folder of links of their own, so that no other header of the machine slips in.
set(folder ${CMAKE_BINARY_DIR}/header_libraries)
file(MAKE_DIRECTORY ${folder})

function(kv_header_library target headers)
  if(NOT IS_DIRECTORY /usr/include/${headers})
    message(FATAL_ERROR "The headers of ${target} are missing: /usr/include/${headers}")
  endif()
  file(CREATE_LINK /usr/include/${headers} ${folder}/${headers} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${folder})
endfunction()

kv_header_library(CLI11::CLI11 CLI)
kv_header_library(fmt::fmt fmt)
kv_header_library(nlohmann_json::nlohmann_json nlohmann)
kv_header_library(Boost::headers boost)
kv_header_library(kv_mustache kainjow)
set(KAINJOW_MUSTACHE_INCLUDE ${folder} CACHE PATH "The folder of the mustache templates' headers")

# What the headers need on the target.
target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)
target_compile_definitions(Boost::headers INTERFACE _WIN32_WINNT=0x0A00 BOOST_ALL_NO_LIB)
target_link_libraries(Boost::headers INTERFACE ws2_32 mswsock)
