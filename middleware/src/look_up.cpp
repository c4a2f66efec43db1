#include "look_up.h"

#include "quiet_thread.h"

#include <boost/asio/ip/address.hpp>
#include <boost/asio/post.hpp>

#include <cstring>
#include <netdb.h>
#include <utility>

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
            result.endpoints.push_back(endpointOf(*found));
    }
    if (result.endpoints.empty())
        result.problem = std::string("unknown host: ") +
                         (failure ? ::gai_strerror(failure) : "no internet address");
    return result;
}

} // namespace

bool isNumericHost(const std::string& host)
{
    boost::system::error_code problem;
    asio::ip::make_address(host, problem);
    return !problem;
}

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
    startQuietThread([context, host, port, done = std::move(done)] {
        const LookUpResult result = askSystem(host, port);
        asio::post(*context, [done, result] { done(result); });
    }).detach();
}
