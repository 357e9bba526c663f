# Copies a guide, PAGE, to TO as a page of the reference: doxygen does not give its headings the names by which links reach
# them elsewhere, so each gets one here, with the page's name before it.
file(READ ${PAGE} text)
get_filename_component(page ${PAGE} NAME_WE)
string(REGEX MATCHALL "\n##+ [^\n]+" headings "${text}")
foreach(heading IN LISTS headings)
    string(REGEX REPLACE "^\n##+ " "" name "${heading}")
    string(TOLOWER "${name}" name)
    string(REGEX REPLACE "[^a-z0-9_ -]" "" name "${name}")
    string(REPLACE " " "-" name "${name}")
    string(REPLACE "${heading}\n" "${heading} {#${page}-${name}}\n" text "${text}")
endforeach()
string(REPLACE "](#" "](#${page}-" text "${text}")
string(REGEX REPLACE "\\]\\(([A-Z_]+)\\.md#" "](#\\1-" text "${text}")
# To doxygen one alone means that no link is to be made of a word.
string(REPLACE "%" "%%" text "${text}")
file(WRITE ${TO} "${text}")
