// SPDX-License-Identifier: Apache-2.0
// The tests for any platform use the root that the platform has: here, a folder of their own.
#include <gtest/gtest.h>
#include <memory>

#include "support/ScratchRoot.h"

namespace {

class PlatformRoot : public testing::Environment {
public:
    void SetUp() override { root = std::make_unique<testing_support::ScratchRoot>(); }
    void TearDown() override { root.reset(); }

private:
    std::unique_ptr<testing_support::ScratchRoot> root;
};

[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new PlatformRoot);

}
