// SPDX-License-Identifier: MIT
// The smallest client of somebody else: prints one value of a robot's memory.

#include <zo/zo.h>

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::cerr << "usage: other_client HOST PORT KEY\n";
        return 2;
    }
    try {
        const auto broker = ZoBroker::create("other_client", argv[1], std::atoi(argv[2]));
        ZoMemoryProxy memory(broker->getProxy("ZoMemory", 0));
        ZoValue request;
        request.arraySetSize(1);
        request[0].arraySetSize(2);
        request[0][0] = std::string(argv[3]);
        request[0][1] = 0;
        std::cout << memory.getListData(request)[0].toString(ZoWhole) << '\n';
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
