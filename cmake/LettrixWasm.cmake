# The WebAssembly module of the library for the browser page: lettrix.mjs (an ES module whose default
# export is the factory createLettrixModule) and lettrix.wasm. It exports the C interface of lettrix.h
# and nothing else but malloc and free, which a JavaScript caller needs for the arguments it passes by
# address.

# The export list is read from the public header, so a function added there is exported here too.
file(STRINGS ${CMAKE_SOURCE_DIR}/include/lettrix/lettrix.h LETTRIX_API_LINES REGEX "LETTRIX_CALL [A-Za-z0-9_]+\\(")
set(LETTRIX_WASM_EXPORTS "_malloc" "_free")
foreach(line IN LISTS LETTRIX_API_LINES)
  string(REGEX MATCH "LETTRIX_CALL ([A-Za-z0-9_]+)\\(" _ "${line}")
  list(APPEND LETTRIX_WASM_EXPORTS "_${CMAKE_MATCH_1}")
endforeach()
list(JOIN LETTRIX_WASM_EXPORTS "," LETTRIX_WASM_EXPORT_LIST)

add_executable(lettrix_wasm $<TARGET_OBJECTS:lettrix_objects>)
set_target_properties(lettrix_wasm PROPERTIES OUTPUT_NAME lettrix SUFFIX ".mjs")
target_link_options(lettrix_wasm PRIVATE
  "-sEXPORTED_FUNCTIONS=[${LETTRIX_WASM_EXPORT_LIST}]"
  "-sEXPORTED_RUNTIME_METHODS=[]"
  -sMODULARIZE=1 -sEXPORT_ES6=1 -sEXPORT_NAME=createLettrixModule
  -sENVIRONMENT=web,worker
  -sALLOW_MEMORY_GROWTH=1 -sMAXIMUM_MEMORY=2147483648
  -sFILESYSTEM=0 -sINCOMING_MODULE_JS_API=[locateFile,wasmBinary]
  -sDISABLE_EXCEPTION_CATCHING=1)
