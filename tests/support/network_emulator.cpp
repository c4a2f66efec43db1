// SPDX-License-Identifier: MIT
#include "support/network_emulator.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>
#include <utility>
#include <vector>

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;
using Clock = std::chrono::steady_clock;

constexpr std::size_t readBufferSize = std::size_t{64} << 10;
// Small, so that it is the line which decides how much is under way.
constexpr int socketBufferSize = 64 << 10;

tcp::endpoint loopback(int port)
{
    return {asio::ip::address_v4::loopback(), static_cast<unsigned short>(port)};
}

template <class Socket>
void bound(Socket& socket)
{
    socket.set_option(asio::socket_base::receive_buffer_size(socketBufferSize));
    socket.set_option(asio::socket_base::send_buffer_size(socketBufferSize));
}

/// Of all connections.
struct Direction
{
    NetworkWay way;
    std::atomic<std::uint64_t> bytes{0}; ///< handed on
};

/// A client, the connection to the server for it, and the lines between them.
class Joint : public std::enable_shared_from_this<Joint>
{
public:
    Joint(tcp::socket client, Direction& up, Direction& down, Clock::time_point start,
          unsigned seed)
        : fClient(std::move(client)),
          fServer(fClient.get_executor()),
          fUp(fClient, fServer, up, {up.way, start, seed}),
          fDown(fServer, fClient, down, {down.way, start, seed + 1})
    {
    }

    void open(int serverPort)
    {
        fServer.open(tcp::v4());
        bound(fServer);
        fServer.async_connect(loopback(serverPort), [self = shared_from_this()](ErrorCode error) {
            if (error)
                return self->close();
            self->fClient.set_option(tcp::no_delay(true), error);
            self->fServer.set_option(tcp::no_delay(true), error);
            self->fIsOpen = true;
            self->goOn(self->fUp);
            self->goOn(self->fDown);
        });
    }

    void change()
    {
        for (Course* course : {&fUp, &fDown}) {
            course->line.change(course->direction.way);
            goOn(*course);
        }
    }

    bool isClosed() const { return fIsClosed; }

    void close()
    {
        fIsOpen = false;
        fIsClosed = true;
        ErrorCode ignored;
        fClient.close(ignored);
        fServer.close(ignored);
        fUp.timer.cancel();
        fDown.timer.cancel();
    }

private:
    struct Course
    {
        Course(tcp::socket& sender, tcp::socket& receiver, Direction& shared, NetworkLine decides)
            : from(sender),
              to(receiver),
              direction(shared),
              line(std::move(decides)),
              timer(sender.get_executor()),
              in(readBufferSize)
        {
        }

        tcp::socket& from;
        tcp::socket& to;
        Direction& direction;
        NetworkLine line;
        asio::steady_timer timer;
        std::vector<char> in;
        std::string out;
        bool isReading = false;
        bool isWriting = false;
        bool hasEnded = false; ///< the sender
        bool isOver = false;   ///< all that it sent is handed on
    };

    void goOn(Course& course)
    {
        if (!fIsOpen)
            return;
        if (!course.isReading && !course.hasEnded && course.line.room() > 0)
            read(course);
        if (!course.isWriting && !course.isOver)
            handOn(course);
    }

    void read(Course& course)
    {
        course.isReading = true;
        const std::size_t most = std::min(course.in.size(), course.line.room());
        course.from.async_read_some(
            asio::buffer(course.in.data(), most),
            [this, &course, self = shared_from_this()](ErrorCode error, std::size_t size) {
                course.isReading = false;
                course.hasEnded = error == asio::error::eof;
                if (error && !course.hasEnded)
                    return close();
                if (course.hasEnded)
                    course.line.end(Clock::now());
                else
                    course.line.put(Clock::now(), {course.in.data(), size});
                goOn(course);
            });
    }

    void handOn(Course& course)
    {
        const auto now = Clock::now();
        course.out = course.line.take(now);
        if (!course.out.empty())
            write(course);
        else if (course.line.isOver(now))
            end(course);
        else if (course.line.dueAt() < Clock::time_point::max())
            wait(course);
    }

    void write(Course& course)
    {
        course.isWriting = true;
        course.direction.bytes += course.out.size();
        asio::async_write(course.to, asio::buffer(course.out),
                          [this, &course, self = shared_from_this()](ErrorCode error, std::size_t) {
                              course.isWriting = false;
                              if (error)
                                  return close();
                              goOn(course);
                          });
    }

    void wait(Course& course)
    {
        course.timer.expires_at(course.line.dueAt());
        course.timer.async_wait([this, &course, self = shared_from_this()](ErrorCode error) {
            if (!error)
                goOn(course);
        });
    }

    void end(Course& course)
    {
        course.isOver = true;
        ErrorCode ignored;
        course.to.shutdown(tcp::socket::shutdown_send, ignored);
        if (fUp.isOver && fDown.isOver)
            close();
    }

    tcp::socket fClient;
    tcp::socket fServer;
    Course fUp;
    Course fDown;
    bool fIsOpen = false;
    bool fIsClosed = false;
};

} // namespace

class NetworkEmulator::Carrier
{
public:
    Carrier(int serverPort, const NetworkWay& up, const NetworkWay& down)
        : fServerPort(serverPort), fAcceptor(fContext)
    {
        fUp.way = up;
        fDown.way = down;
        fAcceptor.open(tcp::v4());
        bound(fAcceptor);
        fAcceptor.bind(loopback(0));
        fAcceptor.listen();
        fPort = fAcceptor.local_endpoint().port();
        accept();
        fThread = std::thread([this] { fContext.run(); });
    }
    ~Carrier()
    {
        run([this] {
            fAcceptor.close();
            closeAll();
        });
        fThread.join();
    }
    Carrier(const Carrier&) = delete;
    Carrier& operator=(const Carrier&) = delete;

    int port() const { return fPort; }
    std::uint64_t bytesUp() const { return fUp.bytes; }
    std::uint64_t bytesDown() const { return fDown.bytes; }

    void change(const NetworkWay& up, const NetworkWay& down)
    {
        run([&] {
            fUp.way = up;
            fDown.way = down;
            for (const auto& joint : fJoints)
                joint->change();
        });
    }
    void cut()
    {
        run([this] { closeAll(); });
    }

private:
    /// Runs it on the thread, and waits for its end.
    template <class Action>
    void run(Action action)
    {
        std::promise<void> isDone;
        asio::post(fContext, [&] {
            action();
            isDone.set_value();
        });
        isDone.get_future().wait();
    }

    void accept()
    {
        fAcceptor.async_accept([this](ErrorCode error, tcp::socket client) {
            if (!fAcceptor.is_open())
                return;
            if (!error)
                join(std::move(client));
            accept();
        });
    }

    void join(tcp::socket client)
    {
        const auto isClosed = [](const auto& joint) { return joint->isClosed(); };
        fJoints.erase(std::remove_if(fJoints.begin(), fJoints.end(), isClosed), fJoints.end());
        fSeed += 2;
        fJoints.push_back(std::make_shared<Joint>(std::move(client), fUp, fDown, fStart, fSeed));
        fJoints.back()->open(fServerPort);
    }

    void closeAll()
    {
        for (const auto& joint : fJoints)
            joint->close();
        fJoints.clear();
    }

    const int fServerPort;
    const Clock::time_point fStart = Clock::now();
    asio::io_context fContext{1};
    tcp::acceptor fAcceptor;
    int fPort = 0;
    Direction fUp;
    Direction fDown;
    std::vector<std::shared_ptr<Joint>> fJoints;
    unsigned fSeed = 0;
    std::thread fThread;
};

NetworkEmulator::NetworkEmulator(int serverPort, const NetworkWay& up, const NetworkWay& down)
    : fCarrier(std::make_unique<Carrier>(serverPort, up, down))
{
}

NetworkEmulator::NetworkEmulator(int serverPort, const NetworkWay& ways)
    : NetworkEmulator(serverPort, ways, ways)
{
}

NetworkEmulator::~NetworkEmulator() = default;

int NetworkEmulator::port() const
{
    return fCarrier->port();
}

void NetworkEmulator::change(const NetworkWay& up, const NetworkWay& down)
{
    fCarrier->change(up, down);
}

void NetworkEmulator::cut()
{
    fCarrier->cut();
}

std::uint64_t NetworkEmulator::bytesUp() const
{
    return fCarrier->bytesUp();
}

std::uint64_t NetworkEmulator::bytesDown() const
{
    return fCarrier->bytesDown();
}
