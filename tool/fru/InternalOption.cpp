// SPDX-License-Identifier: Apache-2.0
#include "InternalOption.h"

namespace recordkit::tool {

void InternalOption::addTo(CLI::App& command)
{
    command
        .add_option("--internal", text,
                    "Read the internal use area by the system's layout A or B; bytes otherwise")
        ->check(CLI::IsMember({"A", "B"}, CLI::ignore_case))
        ->type_name("A|B");
}

InternalLayout InternalOption::get() const
{
    return text.empty()  ? InternalLayout::STANDARD
           : text == "A" ? InternalLayout::A
                         : InternalLayout::B;
}

}
