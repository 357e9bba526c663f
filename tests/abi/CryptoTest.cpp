#include "abi/AbiModuleTest.h"

namespace {

class Crypto : public AbiModuleTest {
protected:
    Crypto() : AbiModuleTest("Properties", VsMsgbusServiceProperty) {}
};

TEST_F(Crypto, GivesBackWhatItEncrypted) {
    module.Call<decltype(ModuleUseCrypto)>("ModuleUseCrypto");
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{
                                     "Encrypting answers 0", "it is hidden", "Decrypting answers 0", "it is a secret",
                                     "Hashing answers 0", "the hash has 32 bytes", "FIPS mode answers 0"}));
}

}  // namespace
