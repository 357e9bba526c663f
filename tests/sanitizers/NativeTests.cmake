# What a program of tests needs in the native build: the sanitizers' options, and imports that are filled in when it
# starts, so that a test can put others in their place.
function(prepare_native_tests program)
    target_sources(${program} PRIVATE ${PROJECT_SOURCE_DIR}/tests/sanitizers/Options.cpp)
    target_link_options(${program} PRIVATE -Wl,-z,now)
    if(SANITIZE MATCHES thread)
        # The C++ driver adds an operator new of the sanitizer's, and a test that makes memory run out brings its own.
        set_target_properties(${program} PROPERTIES LINKER_LANGUAGE C)
    endif()
endfunction()

# Single tests of what is different here, see docs/TESTING.md. They run under Wine alone.
set(left_out
    # libraries of Windows' own, and flags for their loader
    DlOpen.HandsOutTheModuleOfTheSystem
    DlOpen.PassesOtherFlagsOnUnchanged
    DlSym.GivesTheAddressThatTheSystemGives
    DlSym.GivesNullForANameThatIsNotExportedAndForNullArguments
    LoadFailure.WithoutARuntimePathOpensTheBareNameWhichMaySucceed
    # wide characters of two bytes
    AgentLog.IsWidenedByteByByteWithTheSign
    Values.TextsAreConvertedBothWays
    CUniStreamTest.WidensUtf8
    VsMsgbusCallbacks.WidenLinesByteByByteWithTheSign
    # a library's static objects that outlive all threads but the one that ends the process
    Process/ProcessEnd.*/ReturnsFromMain
    # files that cannot be deleted while they are in use
    Installer.LeavesFilesInUseToItsEnd)
list(JOIN left_out ":" left_out)
