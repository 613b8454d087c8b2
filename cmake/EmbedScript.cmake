# Embeds text files, mostly scripts, in programs as C++ string literals. Run with cmake -P, this file writes one such
# header.
if(CMAKE_SCRIPT_MODE_FILE)
  file(READ ${SCRIPT} text)
  file(WRITE ${HEADER} "// Made from a script file; change that.
#pragma once
// A text may be longer than compilers are required to support; all in use support it.
#pragma GCC system_header

namespace ${NAMESPACE} {

constexpr char ${NAME}[] = R\"script(${text})script\";

}  // namespace ${NAMESPACE}
")
  return()
endif()

set(embed_script_program ${CMAKE_CURRENT_LIST_FILE})

# Generates the header <base name of the script>_script.h for `target`. It defines the text `name` in `namespace`.
function(embed_script target script namespace name)
  get_filename_component(base ${script} NAME_WE)
  get_filename_component(script ${script} ABSOLUTE)
  set(header ${CMAKE_CURRENT_BINARY_DIR}/scripts/${base}_script.h)
  add_custom_command(
    OUTPUT ${header}
    COMMAND ${CMAKE_COMMAND} -DSCRIPT=${script} -DHEADER=${header}
            -DNAMESPACE=${namespace} -DNAME=${name} -P ${embed_script_program}
    DEPENDS ${script} ${embed_script_program}
    VERBATIM)
  target_sources(${target} PRIVATE ${header})
  target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/scripts)
endfunction()
