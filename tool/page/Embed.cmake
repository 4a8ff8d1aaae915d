# Writes web/ as a C++ source: cmake -D WEB=folder -D OUTPUT=file -P Embed.cmake
file(STRINGS ${WEB}/order.txt names)
set(scripts "")
foreach(name ${names})
  file(READ ${WEB}/${name} script)
  string(APPEND scripts "${script}")
endforeach()
file(READ ${WEB}/body.html body)
file(READ ${WEB}/style.css style)
if("${scripts}${body}${style}" MATCHES "</(script|style)")
  message(FATAL_ERROR "a file in ${WEB} holds what ends a script or a style sheet")
endif()
# One literal in the source may not be as long as all scripts: pieces that follow each other are one.
function(literal text result)
  string(LENGTH "${text}" left)
  set(pieces "")
  set(from 0)
  while(from LESS left)
    string(SUBSTRING "${text}" ${from} 8000 piece)
    string(APPEND pieces "R\"~web~(${piece})~web~\"\n")
    math(EXPR from "${from} + 8000")
  endwhile()
  set(${result} "${pieces}" PARENT_SCOPE)
endfunction()
literal("${body}" body)
literal("${style}" style)
literal("\"use strict\";(() => {\n${scripts}})();" scripts)
file(WRITE ${OUTPUT} "#include \"page/Assets.h\"

// Both compilers take literals that are longer than the standard asks of them.
#pragma GCC diagnostic ignored \"-Woverlength-strings\"

namespace tool::page {

const std::string_view kBody =
${body};
const std::string_view kStyle =
${style};
const std::string_view kScript =
${scripts};

}  // namespace tool::page
")
