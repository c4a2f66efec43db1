// SPDX-License-Identifier: MIT
// A broker that is made before main and goes after it. The environment names its robot: ZO_PORT,
// and for TLS ZO_CA. Says where the program is, and waits there for the end of a line.

#include <zo/zo.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

void waitAt(const char* place)
{
    std::cout << place << std::endl;
    std::string line;
    std::getline(std::cin, line);
}

/// Made before the broker, so it goes after it.
class Epilogue
{
public:
    Epilogue() = default;
    ~Epilogue() { std::cout << "without the broker" << std::endl; }
    Epilogue(const Epilogue&) = delete;
    Epilogue& operator=(const Epilogue&) = delete;
};

const Epilogue epilogue;

boost::shared_ptr<ZoBroker> connectedBroker()
{
    ZoBrokerOptions options;
    options.connectTimeout = options.exchangeTimeout = std::chrono::seconds(10);
    options.pingInterval = std::chrono::milliseconds(5);
    const char* const authorities = std::getenv("ZO_CA");
    options.tls = authorities != nullptr;
    if (options.tls)
        options.tlsCaFile = authorities;
    const char* const port = std::getenv("ZO_PORT");
    return ZoBroker::create("StaticBroker", "127.0.0.1", std::atoi(port ? port : "0"), options);
}

const boost::shared_ptr<ZoBroker> broker = connectedBroker();

/// Made after the broker, so it goes before it, but after main.
class Farewell
{
public:
    Farewell() = default;
    ~Farewell()
    {
        waitAt("after main");
        ZoMemoryProxy memory(broker->getProxy("ZoMemory", 0));
        memory.setText("Pose", "[0.5,1]");
        const ZoValue request = ZoValue::fromElements({ZoValue::fromElements({"Pose", 0})});
        std::cout << memory.getListData(request)[0].toString(ZoWhole) << std::endl;
    }
    Farewell(const Farewell&) = delete;
    Farewell& operator=(const Farewell&) = delete;
};

const Farewell farewell;

} // namespace

int main()
{
    waitAt("in main");
    return 0;
}
