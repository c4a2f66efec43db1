// SPDX-License-Identifier: MIT
#include "simulation/settings.h"

#include <algorithm>

using namespace zo;

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr char password[] = "open sesame";

LinkAddress makeAddress(Random& random, int number)
{
    using namespace boost::asio::ip;
    if (random.chance(50))
        return {address_v4(0x0a000000U + static_cast<unsigned>(number)), 6379};
    address_v6::bytes_type bytes{};
    bytes[0] = 0xfd;
    bytes[15] = static_cast<unsigned char>(number);
    return {address_v6(bytes), 6379};
}

} // namespace

SettingsMaker::SettingsMaker(Random& random, const std::string& prefix)
{
    fRules.prefix = fOptions.prefix = prefix;
    if (random.chance(60)) {
        fRules.password = fOptions.password = password;
        if (random.chance(50))
            fRules.user = fOptions.user = "alice";
    }
    fOptions.tls = random.chance(50);
    setTimes(random, fOptions);
}

// The usual times, or others that are each as odd as a user may want them.
void SettingsMaker::setTimes(Random& random, ZoBrokerOptions& options)
{
    if (random.chance(50))
        return;
    const auto some = [&](int least, int most) {
        return milliseconds(random.between(least, most));
    };
    options.connectTimeout = random.chance(10) ? some(10000, 60000) : some(100, 3000);
    options.exchangeTimeout = random.chance(10) ? some(2000, 5000) : some(20, 500);
    options.callTimeout = some(50, 4000);
    options.pingInterval = some(20, 3000);
    options.reconnectWait = some(1, 500);
    options.reconnectWaitMax = random.chance(10) ? some(1, 60000) : some(1, 3000);
    options.timeoutPerKey = microseconds(random.between(0, 100));
}

std::shared_ptr<const LinkSettings> SettingsMaker::right() const
{
    return makeLinkSettings("arm", 6379, fOptions, "simulated panel");
}

std::shared_ptr<const LinkSettings> SettingsMaker::other(Random& random) const
{
    ZoBrokerOptions options = fOptions;
    setTimes(random, options);
    if (random.chance(30))
        options.tls = !options.tls;
    if (random.chance(15))
        options.password = "guessed";
    if (random.chance(5))
        options.user = options.password = "";
    return makeLinkSettings("arm", 6379, options, "simulated panel");
}

void chooseAddresses(Random& random, SimulatedNetwork::Condition& condition)
{
    const int count = random.chance(50) ? 1 : random.chance(5) ? 20 : random.between(2, 5);
    condition.addresses.clear();
    condition.dead.clear();
    for (int i = 0; i < count; ++i)
        condition.addresses.push_back(makeAddress(random, i + 1));
    for (int i = 0; i + 1 < count; ++i) {
        if (random.chance(40))
            condition.dead.push_back(condition.addresses[static_cast<std::size_t>(i)]);
    }
}

SimulatedNetwork::Condition makeCondition(Random& random)
{
    static constexpr microseconds latencies[] = {microseconds(20), microseconds(500),
                                                 milliseconds(5), milliseconds(60)};
    SimulatedNetwork::Condition condition;
    chooseAddresses(random, condition);
    condition.latency = random.pick(latencies);
    condition.writeTime = 4 * condition.latency;
    condition.splits = random.chance(50) ? random.between(0, 60) : 0;
    return condition;
}
