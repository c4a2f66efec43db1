// SPDX-License-Identifier: MIT
#include "simulation/expected_link.h"

#include <algorithm>
#include <utility>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds lead{250};
constexpr std::size_t mostAddresses = 16;

/// The families in turn, that of the first address first; at most 16.
std::vector<LinkAddress> courseOf(std::vector<LinkAddress> addresses)
{
    const auto family = addresses.front().protocol();
    const auto other =
        std::stable_partition(addresses.begin(), addresses.end(), [&](const LinkAddress& address) {
            return address.protocol() == family;
        });
    std::vector<LinkAddress> course;
    auto a = addresses.begin();
    auto b = other;
    while (course.size() < mostAddresses && (a != other || b != addresses.end())) {
        if (a != other)
            course.push_back(*a++);
        if (b != addresses.end() && course.size() < mostAddresses)
            course.push_back(*b++);
    }
    return course;
}

} // namespace

void ExpectedLink::beginAttempt()
{
    fStage = Stage::LookingUp;
    fAttemptEnd = fNow + fSettings->options.connectTimeout;
    if (!fFound.empty()) {
        const Addresses found = std::exchange(fFound, {});
        if (!failsHere())
            race(found);
    } else if (!fIsLookingUp || fNow >= fLookUpSince + fLookUpPatience) {
        lookUp();
    }
}

void ExpectedLink::lookUp()
{
    fLookUpPatience = fIsLookingUp ? std::min(2 * fLookUpPatience, seconds(600)) : seconds(10);
    fIsLookingUp = true;
    fLookUpSince = fNow;
    fActions.push_back(LinkAction::LookUp{++fLookUps, nullptr});
}

void ExpectedLink::lookedUp(int number, const Addresses& addresses, const std::string& problem)
{
    if (isStopped())
        return;
    const bool isNewest = fIsLookingUp && number == fLookUps;
    fIsLookingUp = fIsLookingUp && !isNewest;
    if (failsHere())
        return;
    if (fStage == Stage::Waiting)
        fFound = addresses;
    if (fStage != Stage::LookingUp)
        return;
    if (!addresses.empty())
        race(addresses);
    else if (isNewest)
        fail(problem);
}

void ExpectedLink::race(const Addresses& addresses)
{
    fStage = Stage::Connecting;
    fCourse = courseOf(addresses);
    const auto count = static_cast<int>(fCourse.size());
    const std::chrono::nanoseconds left = std::max(fAttemptEnd, fNow) - fNow;
    fLead = std::min<std::chrono::nanoseconds>(lead, left / count);
    fNextAt = fNow;
    connectNext();
}

void ExpectedLink::connectNext()
{
    if (fCourse.empty() || fNow < fNextAt)
        return;
    fNextAt = fNow + fLead;
    fRunning.push_back(++fNewest);
    fActions.push_back(LinkAction::Connect{fNewest, fCourse.front(), nullptr});
    fCourse.erase(fCourse.begin());
}

bool ExpectedLink::leaveRace(ConnectionId connection)
{
    const auto found = std::find(fRunning.begin(), fRunning.end(), connection);
    if (fStage != Stage::Connecting || found == fRunning.end())
        return false;
    fRunning.erase(found);
    return true;
}

void ExpectedLink::connected(ConnectionId connection)
{
    if (!leaveRace(connection))
        return;
    for (const ConnectionId loser : std::exchange(fRunning, {}))
        fActions.push_back(LinkAction::Close{loser});
    fCourse.clear();
    fCurrent = connection;
    if (!fSettings->options.tls)
        return greet();
    fStage = Stage::Securing;
    fActions.push_back(LinkAction::StartTls{connection});
}

void ExpectedLink::secured(ConnectionId connection)
{
    if (fStage == Stage::Securing && connection == fCurrent)
        greet();
}

void ExpectedLink::greet()
{
    fStage = Stage::Greeting;
    if (!failsHere())
        fTraffic.open(fNow, fCurrent, fSettings);
}
