# Starting a process is what costs time under a sanitizer: each program runs its tests in so many processes.
set(NATIVE_SHARDS 4)

# What a program of tests needs in the native build: the sanitizers' options, and imports that are filled in when it
# starts, so that a test can put others in their place.
function(prepare_native_tests program)
    math(EXPR last "${NATIVE_SHARDS} - 1")
    foreach(shard RANGE ${last})
        add_test(NAME ${program}.${shard} COMMAND ${program} --gtest_filter=-${native_left_out})
        set_tests_properties(${program}.${shard} PROPERTIES
            ENVIRONMENT "GTEST_TOTAL_SHARDS=${NATIVE_SHARDS};GTEST_SHARD_INDEX=${shard}" TIMEOUT 300)
    endforeach()
    target_sources(${program} PRIVATE ${PROJECT_SOURCE_DIR}/tests/sanitizers/Options.cpp)
    target_link_options(${program} PRIVATE -Wl,-z,now)
    if(SANITIZE MATCHES thread)
        # The C++ driver adds an operator new of the sanitizer's, and a test that makes memory run out brings its own.
        set_target_properties(${program} PROPERTIES LINKER_LANGUAGE C)
    endif()
endfunction()

# Single tests of what is different here, see docs/TESTING.md. They run under Wine alone.
set(native_left_out
    # libraries of Windows' own, and flags for their loader
    DlOpen.HandsOutTheModuleOfTheSystem
    DlOpen.PassesOtherFlagsOnUnchanged
    DlSym.GivesTheAddressThatTheSystemGives
    DlSym.GivesNullForANameThatIsNotExportedAndForNullArguments
    LoadFailure.WithoutARuntimePathOpensTheBareNameWhichMaySucceed
    # wide characters of two bytes
    AgentLog.IsWidenedByteByByteWithTheSign
    SimulatedValues.TextsAreConvertedBothWays
    UniStream.WidensUtf8
    VsMsgbusCallbacks.WidenLinesByteByByteWithTheSign
    # files that cannot be deleted while they are in use
    Installer.LeavesFilesInUseToItsEnd)
list(JOIN native_left_out ":" native_left_out)
