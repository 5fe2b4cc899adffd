#include "store/delete_reg_key.h"

#include "support/registry.h"
#include "support/system.h"

#include <gmock/gmock.h>

namespace {

const std::string doomed_path = test_key + "\\Doomed";

class DeleteRegKeys : public CleanSystem {
protected:
    DeleteRegKeys() {
        make_key(test_key);
        make_key(doomed_path);
    }
    static DeleteRegKey opened() { return DeleteRegKey(doomed_path); }
};

TEST_F(DeleteRegKeys, LookAtOnceWhetherTheKeyExists) {
    EXPECT_TRUE(opened().exists());
    EXPECT_FALSE(opened().delete_requested());
    EXPECT_FALSE(opened().changed());
    delete_key(doomed_path);
    EXPECT_FALSE(opened().exists());
}

TEST_F(DeleteRegKeys, AreChangedWhenAnExistingKeyIsToBeDeleted) {
    DeleteRegKey key = opened();
    key.request_delete(true);
    EXPECT_TRUE(key.delete_requested());
    EXPECT_TRUE(key.changed());
    key.request_delete(false);
    EXPECT_FALSE(key.changed());
    delete_key(doomed_path);
    DeleteRegKey missing = opened();
    missing.request_delete(true);
    EXPECT_FALSE(missing.changed());
}

TEST_F(DeleteRegKeys, DeleteOnRequestOnly) {
    DeleteRegKey key = opened();
    key.write();
    EXPECT_TRUE(key_exists(doomed_path));
    key.request_delete(true);
    key.write();
    EXPECT_FALSE(key_exists(doomed_path));
    EXPECT_FALSE(key.exists());
    EXPECT_TRUE(key.delete_requested());
    EXPECT_FALSE(key.changed());
}

TEST_F(DeleteRegKeys, DoNothingMoreOnceDeleted) {
    DeleteRegKey key = opened();
    key.request_delete(true);
    key.write();
    make_key(doomed_path);
    key.write();
    EXPECT_TRUE(key_exists(doomed_path));
}

TEST_F(DeleteRegKeys, DeleteNothingThatAppearedAfterTheyLooked) {
    delete_key(doomed_path);
    DeleteRegKey key = opened();
    make_key(doomed_path);
    key.request_delete(true);
    key.write();
    EXPECT_TRUE(key_exists(doomed_path));
}

TEST_F(DeleteRegKeys, KeepTheirChangeSilentlyWhenDeletionFails) {
    make_key(doomed_path + "\\Child"); // the system refuses to delete a key with subkeys
    DeleteRegKey key = opened();
    key.request_delete(true);
    key.write();
    EXPECT_TRUE(key_exists(doomed_path));
    EXPECT_TRUE(key.exists());
    EXPECT_TRUE(key.changed());
    delete_key(doomed_path + "\\Child");
    key.write();
    EXPECT_FALSE(key_exists(doomed_path));
    EXPECT_FALSE(key.changed());
}

TEST_F(DeleteRegKeys, LookAgainAndForgetTheRequestOnRead) {
    DeleteRegKey key = opened();
    key.request_delete(true);
    key.read();
    EXPECT_TRUE(key.exists());
    EXPECT_FALSE(key.delete_requested());
    delete_key(doomed_path);
    key.read();
    EXPECT_FALSE(key.exists());
    make_key(doomed_path);
    key.read();
    EXPECT_TRUE(key.exists());
}

} // namespace
