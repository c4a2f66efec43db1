// SPDX-License-Identifier: MIT
#include "network/profiles.h"

#include <algorithm>

using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

using std::chrono::microseconds;

NetworkProfile profile(const std::string& name, const std::string& text, microseconds roundTrip,
                       double leastRate)
{
    NetworkProfile made{name, text, {}, leastRate};
    made.way.delay = roundTrip / 2;
    return made;
}

/// With the queue that a router of such a network has.
NetworkProfile limited(NetworkProfile made, microseconds jitter, std::int64_t rate)
{
    made.way.jitter = jitter;
    made.way.rate = rate;
    made.way.queue = std::size_t{64} << 10;
    return made;
}

NetworkProfile poorWifi()
{
    auto made = limited(profile("poor",
                                "poor Wi-Fi: round trip 80 ms, jitter up to 40 ms each way, "
                                "2 Mbit/s, a pause of 500 ms every 10 s",
                                milliseconds(80), 7.5),
                        milliseconds(40), 2000000);
    made.way.pause = milliseconds(500);
    made.way.pauseEvery = seconds(10);
    return made;
}

} // namespace

bool NetworkProfile::carries(double bytesUp, double bytesDown) const
{
    return way.rate == 0 || std::max(bytesUp, bytesDown) * 8 <= static_cast<double>(way.rate);
}

const std::vector<NetworkProfile>& networkProfiles()
{
    static const std::vector<NetworkProfile> all{
        profile("loopback", "loopback", milliseconds(0), 9),
        profile("lan", "LAN: round trip 1 ms", milliseconds(1), 9),
        limited(profile("wifi", "Wi-Fi: round trip 5 ms, jitter up to 5 ms each way, 20 Mbit/s",
                        milliseconds(5), 9),
                milliseconds(5), 20000000),
        poorWifi(),
        limited(profile("cellular", "cellular: round trip 300 ms, 1 Mbit/s", milliseconds(300), 9),
                milliseconds(0), 1000000)};
    return all;
}
