// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_NASTYNAMES_H
#define RECORDKIT_TESTS_SUPPORT_NASTYNAMES_H

#include <string>
#include <vector>

namespace testing_support {

/// Names of folders that mean something to a shell, a terminal or a program; those that a shell
/// takes as a command make a file "canary".
inline std::vector<std::string> nastyNames()
{
    return {
        "two words",
        " leading",
        "trailing ",
        "tab\tbetween",
        "line\nfeed",
        "line\nfeed; touch canary",
        "carriage\rreturn",
        "; touch canary",
        ";touch canary;",
        "&& touch canary",
        "|| touch canary",
        "| touch canary",
        "& touch canary &",
        "$(touch canary)",
        "`touch canary`",
        "${IFS}touch${IFS}canary",
        "> canary",
        "a>canary",
        "< canary",
        "2>&1",
        "'single'",
        "'; touch canary; '",
        "\"double\"",
        "\"; touch canary; \"",
        "back\\slash",
        "trailing\\",
        "$HOME",
        "~",
        "~root",
        "*",
        "?",
        "[a-z]",
        "{a,b}",
        "!history",
        "#comment",
        "(subshell)",
        "%s%n",
        "\033[31mred",
        "not \xFF UTF-8",
        "\xC3\xA4\xE2\x82\xAC UTF-8",
        "--option -rf",
        "=,:@^",
    };
}

}

#endif
