#include "app/instance_claim.h"

#include <gtest/gtest.h>

#include "app/testing/fake_single_instance.h"

namespace vantle::testing {
namespace {

class InstanceClaimTest : public ::testing::Test {
protected:
    InstanceClaim claim() {
        return claimSessionOrHandOver(instance, [this] { ++reopened; }, [this] { ++pauses; });
    }

    FakeSingleInstance instance;
    int reopened = 0;
    int pauses = 0;
};

TEST_F(InstanceClaimTest, AFreeSessionIsTakenAtOnceWithTheReopenRequestKept) {
    EXPECT_EQ(claim(), InstanceClaim::claimed);
    EXPECT_EQ(instance.claims, 1);
    EXPECT_EQ(instance.requests, 0);
    EXPECT_EQ(pauses, 0);
    ASSERT_TRUE(instance.reopen);
    instance.reopen();
    EXPECT_EQ(reopened, 1);
}

TEST_F(InstanceClaimTest, ASessionHeldByAnAnsweringCopyIsHandedOverWithoutWaiting) {
    instance.claimsRefused = 100;
    instance.runningCopyAnswers = true;
    EXPECT_EQ(claim(), InstanceClaim::handedOver);
    EXPECT_EQ(instance.claims, 1);
    EXPECT_EQ(instance.requests, 1);
    EXPECT_EQ(pauses, 0);
}

TEST_F(InstanceClaimTest, ACopyThatIsEndingIsWaitedForAndTheSessionTaken) {
    instance.claimsRefused = 3;
    EXPECT_EQ(claim(), InstanceClaim::claimed);
    EXPECT_EQ(instance.claims, 4);
    EXPECT_EQ(instance.requests, 3);
    EXPECT_EQ(pauses, 3);
}

TEST_F(InstanceClaimTest, ACopyThatNeverAnswersIsGivenUpOnAfterTenTries) {
    instance.claimsRefused = 100;
    EXPECT_EQ(claim(), InstanceClaim::unanswered);
    EXPECT_EQ(instance.claims, 10);
    EXPECT_EQ(instance.requests, 10);
    EXPECT_EQ(pauses, 9);
}

}  // namespace
}  // namespace vantle::testing
