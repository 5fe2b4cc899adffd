#include "store/delete_reg_key.h"

#include "support/clean_system.h"
#include "support/registry.h"

#include <gmock/gmock.h>

namespace {

const std::string kDoomed = kTestKey + "\\Doomed";

class DeleteRegKeys : public CleanSystem {
protected:
    DeleteRegKeys() {
        make_key(kTestKey);
        make_key(kDoomed);
    }
    static DeleteRegKey opened() { return {HKEY_LOCAL_MACHINE, kDoomed}; }
};

TEST_F(DeleteRegKeys, LookAtOnceWhetherTheKeyExists) {
    EXPECT_TRUE(opened().exists());
    EXPECT_FALSE(opened().delete_requested());
    EXPECT_FALSE(opened().changed());
    delete_key(kDoomed);
    EXPECT_FALSE(opened().exists());
}

TEST_F(DeleteRegKeys, AreChangedWhenAnExistingKeyIsToBeDeleted) {
    DeleteRegKey key = opened();
    key.request_delete(true);
    EXPECT_TRUE(key.delete_requested());
    EXPECT_TRUE(key.changed());
    key.request_delete(false);
    EXPECT_FALSE(key.changed());
    delete_key(kDoomed);
    DeleteRegKey missing = opened();
    missing.request_delete(true);
    EXPECT_FALSE(missing.changed());
}

TEST_F(DeleteRegKeys, DeleteOnRequestOnly) {
    DeleteRegKey key = opened();
    key.write();
    EXPECT_TRUE(key_exists(kDoomed));
    key.request_delete(true);
    key.write();
    EXPECT_FALSE(key_exists(kDoomed));
    EXPECT_FALSE(key.exists());
    EXPECT_TRUE(key.delete_requested());
    EXPECT_FALSE(key.changed());
}

TEST_F(DeleteRegKeys, DoNothingMoreOnceDeleted) {
    DeleteRegKey key = opened();
    key.request_delete(true);
    key.write();
    make_key(kDoomed);
    key.write();
    EXPECT_TRUE(key_exists(kDoomed));
}

TEST_F(DeleteRegKeys, DeleteNothingThatAppearedAfterTheyLooked) {
    delete_key(kDoomed);
    DeleteRegKey key = opened();
    make_key(kDoomed);
    key.request_delete(true);
    key.write();
    EXPECT_TRUE(key_exists(kDoomed));
}

TEST_F(DeleteRegKeys, KeepTheirChangeSilentlyWhenDeletionFails) {
    make_key(kDoomed + "\\Child"); // the system refuses to delete a key with subkeys
    DeleteRegKey key = opened();
    key.request_delete(true);
    key.write();
    EXPECT_TRUE(key_exists(kDoomed));
    EXPECT_TRUE(key.exists());
    EXPECT_TRUE(key.changed());
    delete_key(kDoomed + "\\Child");
    key.write();
    EXPECT_FALSE(key_exists(kDoomed));
    EXPECT_FALSE(key.changed());
}

TEST_F(DeleteRegKeys, LookAgainAndForgetTheRequestOnRead) {
    DeleteRegKey key = opened();
    key.request_delete(true);
    key.read();
    EXPECT_TRUE(key.exists());
    EXPECT_FALSE(key.delete_requested());
    delete_key(kDoomed);
    key.read();
    EXPECT_FALSE(key.exists());
    make_key(kDoomed);
    key.read();
    EXPECT_TRUE(key.exists());
}

} // namespace
