// SPDX-License-Identifier: Apache-2.0
// Changes one field of a FRU image, and nothing else: edit_fru IMAGE board.serial=SN4711
#include <fstream>
#include <iostream>
#include <iterator>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruEdit.h>

using namespace recordkit::inspect;

int main(int argc, char** argv)
try {
    std::ifstream file(argc == 3 ? argv[1] : "board.bin", std::ios::binary);
    const std::string image{std::istreambuf_iterator<char>(file), {}};
    const FruEditResult result =
        editFruImage(image, {parseFruEdit(argc == 3 ? argv[2] : "board.serial=SN4711")}, {});
    std::ofstream(argv[1], std::ios::binary) << result.bytes;
    std::cout << *result.changes[0].before << " -> " << *result.changes[0].after << '\n';
} catch (const Error& e) {
    std::cerr << e.what() << '\n';
    return 1;
}
