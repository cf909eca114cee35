// SPDX-License-Identifier: Apache-2.0
// A machine of four boards that records which type it is asked for.
#include <recordkit/platform/CommonUtil.h>

#include "Asked.h"

namespace testing_support {

int systemBoardType = 0;

}

int CommonUtil::getMaxUnitNum(int /*kind*/)
{
    return 4;
}

int CommonUtil::getMaxPartitionNum()
{
    return 4;
}

int CommonUtil::getSBBoardType(unsigned char sbNo, unsigned char kind)
{
    testing_support::asked.push_back("getSBBoardType " + std::to_string(sbNo) + " " +
                                     std::to_string(kind));
    return testing_support::systemBoardType;
}
