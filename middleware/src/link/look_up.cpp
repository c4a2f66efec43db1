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

/// One look-up of a name, on its thread. That belongs to nobody, so whatever goes wrong on it must
/// end there, and somebody waits for its answer, so that must go out.
class NameLookUp
{
public:
    NameLookUp(std::shared_ptr<asio::io_context> context, std::string host, int port,
               std::function<void(const LookUpResult&)> done)
        : fContext(std::move(context)), fHost(std::move(host)), fPort(port), fDone(std::move(done))
    {
    }

    static void run(const std::shared_ptr<NameLookUp>& self) noexcept
    {
        try {
            self->fResult = askSystem(self->fHost, self->fPort);
        } catch (const std::exception&) {
            self->fResult = {{}, fShort};
        }
        while (!tell(self))
            std::this_thread::sleep_for(fPause);
    }

private:
    static constexpr std::chrono::milliseconds fPause{100};
    static constexpr char fShort[] = "out of memory"; // which a string holds without any

    static bool tell(const std::shared_ptr<NameLookUp>& self) noexcept
    {
        try {
            asio::post(*self->fContext, [self] { self->fDone(self->fResult); });
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }

    const std::shared_ptr<asio::io_context> fContext;
    const std::string fHost;
    const int fPort;
    const std::function<void(const LookUpResult&)> fDone;
    LookUpResult fResult;
};

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
    const auto task = std::make_shared<NameLookUp>(context, host, port, std::move(done));
    startQuietThread([task] { NameLookUp::run(task); }).detach();
}
