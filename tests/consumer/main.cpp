// SPDX-License-Identifier: MIT
#include <model.h>
#include <module.h>
#include <zo/zo.h>

#include <boost/make_shared.hpp>

#include <iostream>

/// Reads a value of this process's own memory through the panel's module.
int main()
{
    const auto memory = boost::make_shared<ZoMemoryProxy>(ZoBroker::create("Consumer"));
    memory->setData("Arm/Elbow/Angle", 0.5);
    Module module(memory);
    std::vector<std::string> keys;
    module.getListDatas(keys);
    std::cout << keys.size() << " key: " << keys.front() << "\n";
    return keys.size() == 1 ? 0 : 1;
}
