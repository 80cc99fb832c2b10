#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <deque>
#include <list>
#include <mutex>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "faults/faults.h"
#include "server/controlport.h"

namespace vesk::backend {

namespace {

constexpr int kBacklog = 128;
constexpr int kPollMs = 5;
constexpr size_t kChunk = 16384;

using Action = LineFault::Action;

/// Owns a TCP socket.
class Socket {
public:
    explicit Socket(int fd = -1) : mFd(fd) {}
    Socket(Socket&& other) noexcept : mFd(other.mFd) { other.mFd = -1; }
    Socket& operator=(Socket&& other) noexcept {
        std::swap(mFd, other.mFd);
        return *this;
    }
    ~Socket() {
        if (mFd >= 0) {
            ::close(mFd);
        }
    }

    static Socket make() { return Socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)); }

    int fd() const { return mFd; }

    template <typename Value>
    void set(int level, int option, const Value& value) const {
        ::setsockopt(mFd, level, option, &value, sizeof(value));
    }

private:
    int mFd;
};

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool connectTo(const Socket& socket, int port) {
    const sockaddr_in address = loopback(port);
    return ::connect(socket.fd(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) ==
           0;
}

/// Carries one connection until one side ends it, the fault comes, or the line is set anew.
class Carrier {
public:
    Carrier(Socket client, int target, const LineFault& fault)
        : mClient(std::move(client)), mServer(Socket::make()), mFault(fault), mTarget(target) {}

    void run(const std::atomic<bool>& ended) {
        mClient.set(IPPROTO_TCP, TCP_NODELAY, 1);
        if (mFault.action == Action::Flood) {
            flood(ended);
            return;
        }
        mServer.set(IPPROTO_TCP, TCP_NODELAY, 1);
        // The system has connected the client at once.
        std::this_thread::sleep_for(2 * mDelay);
        bool carries = connectTo(mServer, mTarget);
        while (carries && !ended) {
            if (faultIsDue()) {
                strike(ended);
                return;
            }
            pollfd sides[] = {{mClient.fd(), POLLIN, 0}, {mServer.fd(), POLLIN, 0}};
            ::poll(sides, 2, mUnderWay.empty() ? kPollMs : 1);
            deliver(Clock::now());
            carries = (sides[0].revents == 0 || carry(mClient, mServer, mFromClient, false)) &&
                      (sides[1].revents == 0 || carry(mServer, mClient, mFromServer, true));
        }
        for (const Late& late : mUnderWay) {
            std::this_thread::sleep_until(late.due);
            send(late.to, late.bytes.data(), late.bytes.size());
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    /// Bytes that have been taken from one side and not yet given to the other.
    struct Late {
        Clock::time_point due;
        const Socket& to;
        std::string bytes;
    };

    bool faultIsDue() const {
        return mFault.action != Action::Pass &&
               (mFault.fromServer ? mFromServer : mFromClient) >= mFault.after;
    }

    bool carry(const Socket& from, const Socket& to, size_t& count, bool fromServer) {
        size_t wanted = kChunk;
        if (mFault.action != Action::Pass && mFault.fromServer == fromServer) {
            wanted = std::min(wanted, mFault.after - count);
        }
        char chunk[kChunk];
        const ssize_t size = ::recv(from.fd(), chunk, wanted, 0);
        if (size <= 0) {
            return false;
        }
        count += static_cast<size_t>(size);
        if (mDelay.count() == 0) {
            return send(to, chunk, static_cast<size_t>(size));
        }
        mUnderWay.push_back({Clock::now() + mDelay, to, {chunk, static_cast<size_t>(size)}});
        return true;
    }

    /// As it blocks, it sends all or fails.
    static bool send(const Socket& to, const char* data, size_t size) {
        return ::send(to.fd(), data, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
    }

    void deliver(Clock::time_point now) {
        while (!mUnderWay.empty() && mUnderWay.front().due <= now) {
            const Late& late = mUnderWay.front();
            send(late.to, late.bytes.data(), late.bytes.size());
            mUnderWay.pop_front();
        }
    }

    void flood(const std::atomic<bool>& ended) const {
        std::string rest = mFault.head;
        while (!ended) {
            if (rest.empty()) {
                rest = mFault.wave;
            }
            pollfd client = {mClient.fd(), POLLOUT, 0};
            if (::poll(&client, 1, kPollMs) > 0) {
                const ssize_t sent =
                    ::send(mClient.fd(), rest.data(), rest.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
                if (sent <= 0) {
                    return;
                }
                rest.erase(0, static_cast<size_t>(sent));
            }
        }
    }

    void strike(const std::atomic<bool>& ended) const {
        if (mFault.action == Action::Reset) {
            mClient.set(SOL_SOCKET, SO_LINGER, linger{1, 0});
        }
        pollfd client = {mClient.fd(), POLLRDHUP, 0};
        while (mFault.action == Action::Stall && !ended && ::poll(&client, 1, kPollMs) == 0) {
        }
    }

    const Socket mClient;
    const Socket mServer;
    const LineFault mFault;
    const int mTarget;
    const Clock::duration mDelay = std::chrono::milliseconds(mFault.delayMs);
    std::deque<Late> mUnderWay;
    size_t mFromClient = 0;
    size_t mFromServer = 0;
};

class Line : public FaultyLine {
public:
    explicit Line(int target) : mTarget(target) { open(LineFault()); }
    ~Line() override { close(); }

    void set(const LineFault& fault) override {
        const std::lock_guard<std::mutex> lock(mMutex);
        close();
        open(fault);
    }

    int port() const override { return mPort; }
    size_t connections() const override { return mConnections; }

private:
    void open(const LineFault& fault) {
        mEnded = false;
        if (fault.action == Action::Refuse) {
            return;
        }
        mListener = Socket::make();
        mListener.set(SOL_SOCKET, SO_REUSEADDR, 1);
        sockaddr_in address = loopback(mPort);
        socklen_t size = sizeof(address);
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        const bool deaf = fault.action == Action::Deaf;
        if (::bind(mListener.fd(), generic, size) != 0 ||
            ::listen(mListener.fd(), deaf ? 0 : kBacklog) != 0 ||
            ::getsockname(mListener.fd(), generic, &size) != 0) {
            throw Refusal(400, "the line has no port");
        }
        mPort = ntohs(address.sin_port);
        if (deaf) {
            // One connection fills the queue; the system drops the attempts that come after it.
            mFiller = Socket::make();
            connectTo(mFiller, mPort);
            return;
        }
        mAcceptor = std::thread([this, fault] { accept(fault); });
    }

    void accept(const LineFault& fault) {
        while (!mEnded) {
            pollfd listener = {mListener.fd(), POLLIN, 0};
            if (::poll(&listener, 1, kPollMs) <= 0) {
                continue;
            }
            Socket client(::accept4(mListener.fd(), nullptr, nullptr, SOCK_CLOEXEC));
            if (client.fd() >= 0) {
                ++mConnections;
                mCarriers.emplace_back([this, fault, peer = std::move(client)]() mutable {
                    Carrier(std::move(peer), mTarget, fault).run(mEnded);
                });
            }
        }
    }

    void close() {
        mEnded = true;
        if (mAcceptor.joinable()) {
            mAcceptor.join();
        }
        for (std::thread& carrier : mCarriers) {
            carrier.join();
        }
        mCarriers.clear();
        mListener = Socket();
        mFiller = Socket();
    }

    std::mutex mMutex; // one set() at a time
    const int mTarget;
    std::atomic<int> mPort{0};
    std::atomic<size_t> mConnections{0};
    std::atomic<bool> mEnded{false};
    Socket mListener;
    Socket mFiller;
    std::thread mAcceptor;
    std::list<std::thread> mCarriers; // the acceptor's while it runs
};

} // namespace

std::unique_ptr<FaultyLine> openLine(int target) {
    return std::make_unique<Line>(target);
}

} // namespace vesk::backend
