# cmake -DFOLDER=<folder> -DOUTPUT=<file.cpp> -P EmbedPage.cmake: puts the style and the scripts of the page in FOLDER into it,
# and writes a source that has the whole page.
file(READ ${FOLDER}/timeline.html page)
file(READ ${FOLDER}/timeline.css style)
string(REPLACE "<link rel=\"stylesheet\" href=\"timeline.css\">" "<style>\n${style}</style>" page "${page}")
foreach(name texts record chart timeline)
    file(READ ${FOLDER}/${name}.js script)
    string(REPLACE "<script src=\"${name}.js\"></script>" "<script>\n${script}</script>" page "${page}")
endforeach()
if(page MATCHES " (src|href)=\"")
    message(FATAL_ERROR "the page needs another file")
endif()
file(WRITE ${OUTPUT}.html "${page}")
file(READ ${OUTPUT}.html bytes HEX)
file(REMOVE ${OUTPUT}.html)
string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${bytes}")
# A compiler takes no line of any length.
string(REGEX REPLACE "(................................................................................................................................)"
    "\\1\"\n    \"" bytes "${bytes}")
file(WRITE ${OUTPUT} "// Made by tool/timeline/EmbedPage.cmake.
#include \"tool/timeline/PageWithoutRecord.h\"

namespace tool {

std::string_view PageWithoutRecord() {
    static constexpr char page[] =
    \"${bytes}\";
    return {page, sizeof page - 1};
}

}  // namespace tool
")
