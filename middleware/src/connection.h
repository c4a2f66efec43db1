#pragma once

#include "exchange.h"
#include "stream.h"
#include "wire/reply_reader.h"

#include <boost/asio/io_context.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// One connection to the robot, from its opening to its loss, with one exchange at a time.
/// Lives on the I/O thread. After `close` it does nothing more and calls nobody.
class Connection : public std::enable_shared_from_this<Connection>
{
public:
    /// Whom it calls. `opened` and `exchanged` are its good news; after `lost` it is closed.
    struct Listener
    {
        std::function<void()> opened;
        std::function<void()> exchanged;
        std::function<void(const ReplyProblem& cause)> lost;
    };

    Connection(boost::asio::io_context& context, boost::asio::ssl::context* tls,
               const std::string& host, Listener listener);

    void open(const std::vector<boost::asio::ip::tcp::endpoint>& endpoints);

    /// Sends `exchange`. None may be under way.
    void send(std::shared_ptr<Exchange> exchange);
    const std::shared_ptr<Exchange>& exchange() const { return fExchange; }

    void close();

    /// What it does before the first exchange is through, for messages.
    const char* stage() const { return fStage; }

private:
    using ErrorCode = boost::system::error_code;

    void startStream();
    void read();
    void takeBytes(std::size_t size);
    void endExchangeIfWhole();
    void lose(const ReplyProblem& cause);
    bool isBroken(const ErrorCode& error);

    Stream fStream;
    Listener fListener;
    ReplyReader fReader;
    std::vector<char> fBuffer;
    std::shared_ptr<Exchange> fExchange;
    const char* fStage = "connecting";
    bool fIsWriting = false;
    bool fIsClosed = false;
};
