// SPDX-License-Identifier: MIT
#include "link/look_up.h"

#include "link/quiet_thread.h"

#include <boost/asio/ip/address.hpp>
#include <boost/asio/post.hpp>

#include <chrono>
#include <cstring>
#include <exception>
#include <netdb.h>
#include <thread>
#include <utility>

namespace zo {

namespace {

namespace asio = boost::asio;
using Tcp = asio::ip::tcp;

using AddressList = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

Tcp::endpoint endpointOf(const addrinfo& found)
{
    Tcp::endpoint endpoint;
    endpoint.resize(found.ai_addrlen);
    std::memcpy(endpoint.data(), found.ai_addr, found.ai_addrlen);
    return endpoint;
}

LookUpResult askSystem(const std::string& host, int port)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    const int failure = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &first);
    const AddressList list(failure ? nullptr : first, &::freeaddrinfo);
    LookUpResult result;
    for (const addrinfo* found = list.get(); found; found = found->ai_next) {
        if (found->ai_family == AF_INET || found->ai_family == AF_INET6)
            result.addresses.push_back(endpointOf(*found));
    }
    if (result.addresses.empty())
        result.problem = std::string("unknown host: ") +
                         (failure ? ::gai_strerror(failure) : "no internet address");
    return result;
}

/// The answer to a look-up, on its way to who waits for it. It does not hold the context in which
/// it is handed over: that may never run again, and holds the answer then.
struct Answer
{
    std::function<void(const LookUpResult&)> done;
    LookUpResult result;
};

bool handOver(asio::io_context& context, const std::shared_ptr<const Answer>& answer) noexcept
{
    try {
        asio::post(context, [answer] { answer->done(answer->result); });
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

/// The body of a look-up's thread. That belongs to nobody, so whatever goes wrong on it must end
/// there; and somebody waits for the answer, so that must go out.
void answerOnThread(asio::io_context& context, const std::string& host, int port,
                    const std::shared_ptr<Answer>& answer) noexcept
{
    try {
        answer->result = askSystem(host, port);
    } catch (const std::exception&) {
        answer->result = {{}, "out of memory"}; // short enough for a string to need none
    }
    // Memory comes back without telling anybody: there is nothing else to wait for.
    while (!handOver(context, answer))
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

} // namespace

void lookUp(const std::shared_ptr<asio::io_context>& context, const std::string& host, int port,
            std::function<void(const LookUpResult&)> done)
{
    boost::system::error_code problem;
    const auto address = asio::ip::make_address(host, problem);
    if (!problem) {
        const LookUpResult known{{{address, static_cast<unsigned short>(port)}}, {}};
        asio::post(*context, [done = std::move(done), known] { done(known); });
        return;
    }
    const auto answer = std::make_shared<Answer>(Answer{std::move(done), {}});
    startQuietThread([context, host, port, answer] {
        answerOnThread(*context, host, port, answer);
    }).detach();
}

} // namespace zo
