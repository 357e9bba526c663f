# cmake -DBIN=<folder> -DCHECKING=<dll> -DFOLDER=<folder> -P SilentFolder.cmake: puts links to what is built in BIN into
# FOLDER, and the checking bridge in the place of the shipped one.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
file(GLOB built ${BIN}/*)
foreach(file IN LISTS built)
    get_filename_component(name ${file} NAME)
    if(name STREQUAL "VsMsgbus.dll")
        set(file ${CHECKING})
    endif()
    file(CREATE_LINK ${file} ${FOLDER}/${name} SYMBOLIC COPY_ON_ERROR)
endforeach()
