# Writes a header with the text of a script.  cmake -DSCRIPT=in.js -DHEADER=out.h -P embed.cmake
file(READ ${SCRIPT} text)
file(WRITE ${HEADER} "// Made from a script file; change that.
#pragma once

namespace corvis::tv {

constexpr char kPageScript[] = R\"page(${text})page\";

}  // namespace corvis::tv
")
