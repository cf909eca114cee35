// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

class SelBackup : public SelTest {};

}

TEST_F(SelBackup, DoesNotOverwriteALeftOverOne)
{
    initialise();
    fill(5);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    writeFile(working(1), Bytes(FULL_FILE, 0xFF));
    expectRefused(1, {"backup", "--board", "1"}, "run \"recordkit sel check --recover\" first");
}
