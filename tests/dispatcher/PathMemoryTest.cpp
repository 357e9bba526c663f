// A library's path for which there is no memory.
#include "dispatcher/DispatcherTest.h"
#include "support/SystemFunction.h"

namespace {

using testing::ElementsAre;

constexpr size_t longDirectory = 300;  // more than a scratch buffer holds without memory of its own

using AllocateFunction = void*(size_t count, size_t size);

AllocateFunction* SystemAllocation() {
    return reinterpret_cast<AllocateFunction*>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("msvcrt.dll"), "calloc")));
}

// Fails for the path alone, whose allocation has twice the directory's size.
void* AllocateNoPath(size_t count, size_t size) {
    return count * size == 2 * longDirectory ? nullptr : SystemAllocation()(count, size);
}

class PathMemory : public DispatcherTest {
protected:
    TestGroup<1> crypto{"crypto", "ny_client.dll", {"ny_crypto_name"}};
};

TEST_F(PathMemory, ThatRunsOutEndsTheLoadAndLeavesNoLibrary) {
    dispatcher->grouper.defaultPath = std::string(longDirectory, 'p');
    {
        const SystemFunction<AllocateFunction> none(SystemAllocation(), &AllocateNoPath);
        EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    }
    EXPECT_THAT(log.Lines(),
                ElementsAre(LoadStarts("crypto:RDXAGENT3000:ny_client.dll"),
                            Failed("ny_grouper_add_member library", NY_OUT_OF_MEMORY), LoadReturns(NY_OUT_OF_MEMORY)));
    EXPECT_THAT(dispatcher->grouper.members.at(0)->libraries, testing::IsEmpty());
    EXPECT_EQ(crypto.table.load(), nullptr);
}

}  // namespace
