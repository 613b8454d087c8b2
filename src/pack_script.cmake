# Joins the files of the script API in the given order, removes comments and white space, and writes the result twice:
# as voiceinteraction_api.js, and as the C++ string literal kScriptApiSource.
#   cmake -DSOURCES=a.js,b.js -DESBUILD=esbuild -DSCRIPT=out.js -DCODE=out.cc -P pack_script.cmake
string(REPLACE "," ";" sources "${SOURCES}")
execute_process(COMMAND ${CMAKE_COMMAND} -E cat ${sources} OUTPUT_FILE ${SCRIPT}.joined RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "Can't join the script API's files ${sources}.")
endif()

# Keeps all names, and fails for syntax that Chrome 47 can't parse.
execute_process(COMMAND ${ESBUILD} --minify-whitespace --target=chrome47 --charset=utf8 --log-level=warning
                INPUT_FILE ${SCRIPT}.joined OUTPUT_VARIABLE packed RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "esbuild refused the script API; see its output above.")
endif()
string(STRIP "${packed}" packed)
# esbuild removes the parentheses of `new` without arguments; the last statement must keep them.
string(REGEX REPLACE "new VoiceInteractionHandler;$" "new VoiceInteractionHandler();" packed "${packed}")
if(packed STREQUAL "" OR packed MATCHES "\n" OR packed MATCHES "\\)corvis\"")
  message(FATAL_ERROR "The packed script API must be one line without the text )corvis\".")
endif()

file(WRITE ${SCRIPT} "${packed}")
file(WRITE ${CODE} "// Made from the files of the script API; change those.
#include \"voice-interaction/script_api_source.h\"

const char kScriptApiSource[] = R\"corvis(${packed})corvis\";
")
