# cmake -DFOLDER=<folder> -DOUTPUT=<file.cpp> -P EmbedPage.cmake: writes a source that has the page's three files in it.
set(source "// Made by tool/timeline/EmbedPage.cmake.\n#include \"tool/timeline/PageFiles.h\"\n\nnamespace tool {\n\n")
foreach(kind Html Css Js)
    string(TOLOWER ${kind} ending)
    file(READ ${FOLDER}/timeline.${ending} bytes HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(APPEND source
        "namespace {\nconstexpr char bytesOf${kind}[] = {${bytes}};\n}\n\n"
        "std::string_view Page${kind}() {\n    return {bytesOf${kind}, sizeof bytesOf${kind}};\n}\n\n")
endforeach()
file(WRITE ${OUTPUT} "${source}}  // namespace tool\n")
