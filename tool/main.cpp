// SPDX-License-Identifier: Apache-2.0
#include "Run.h"

int main(int argc, char** argv)
{
    return recordkit::tool::run({argv + (argc > 0 ? 1 : 0), argv + argc});
}
