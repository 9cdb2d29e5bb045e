#pragma once

// A counterparty that speaks raw bytes: it accepts one connection on a loopback port,
// answers the logon by hand and then writes whatever a test tells it, well-formed or not.
// Header-only so that every FIX test program can use it.

#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace wicker::test {

/// A framed FIX message: BeginString, BodyLength and CheckSum around `body`, whose
/// fields are separated by '|' (turned into SOH).
inline std::string FixFrame(std::string_view body, std::string_view beginString = "FIX.4.2") {
    std::string b(body);
    for (char& c : b) {
        if (c == '|') {
            c = '\x01';
        }
    }
    if (!b.empty() && b.back() != '\x01') {
        b += '\x01';
    }
    std::string out =
        "8=" + std::string(beginString) + "\x01" + "9=" + std::to_string(b.size()) + "\x01" + b;
    unsigned sum = 0;
    for (unsigned char c : out) {
        sum += c;
    }
    char tail[16];
    std::snprintf(tail, sizeof tail, "10=%03u\x01", sum % 256);
    return out + tail;
}

/// "52=" value for now.
/// The value of `tag` in a framed message, "" when absent.
inline std::string FieldOf(std::string_view message, int tag) {
    const std::string key = "\x01" + std::to_string(tag) + "=";
    const size_t at = message.find(key);
    if (at == std::string_view::npos) {
        return "";
    }
    const size_t from = at + key.size();
    return std::string(message.substr(from, message.find('\x01', from) - from));
}

inline std::string FixNow() {
    const std::time_t t = std::time(nullptr);
    std::tm tm{};
    gmtime_r(&t, &tm);
    char buf[32];
    std::strftime(buf, sizeof buf, "%Y%m%d-%H:%M:%S", &tm);
    return buf;
}

class RawFixPeer {
public:
    RawFixPeer() {
        m_listen = ::socket(AF_INET, SOCK_STREAM, 0);
        int one = 1;
        ::setsockopt(m_listen, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (::bind(m_listen, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 ||
            ::listen(m_listen, 4) != 0) {
            throw std::runtime_error("cannot listen");
        }
        socklen_t len = sizeof a;
        ::getsockname(m_listen, reinterpret_cast<sockaddr*>(&a), &len);
        m_port = ntohs(a.sin_port);
    }
    ~RawFixPeer() {
        closeClient();
        ::close(m_listen);
    }
    RawFixPeer(const RawFixPeer&) = delete;
    RawFixPeer& operator=(const RawFixPeer&) = delete;

    int port() const { return m_port; }

    /// Waits for a connection and its Logon, and answers it (our MsgSeqNum 1).
    bool acceptLogon(std::chrono::milliseconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        // A connection that closes before its logon (an earlier client going away) is
        // skipped.
        do {
            closeClient();
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                deadline - std::chrono::steady_clock::now());
            pollfd p{m_listen, POLLIN, 0};
            if (left.count() <= 0 || ::poll(&p, 1, static_cast<int>(left.count())) != 1) {
                return false;
            }
            m_client = ::accept(m_listen, nullptr, nullptr);
        } while (m_client < 0 || readUntil("35=A", limit).empty());
        m_seq = 1;
        return write(FixFrame("35=A|34=1|49=EXCH|56=WICKER|52=" + FixNow() + "|98=0|108=30"));
    }

    /// Closes the connection and every one still waiting to be accepted (of a client
    /// that is gone).
    void dropPending() {
        closeClient();
        pollfd p{m_listen, POLLIN, 0};
        while (::poll(&p, 1, 0) == 1) {
            const int fd = ::accept(m_listen, nullptr, nullptr);
            if (fd < 0) {
                break;
            }
            ::close(fd);
        }
    }

    /// Sends a message of ours with the next sequence number; `body` starts after the
    /// header ("35=8|11=...").
    bool send(std::string_view body, std::string_view targetCompID = "WICKER") {
        const size_t bar = body.find('|');
        const std::string type(body.substr(0, bar));
        const std::string rest(bar == std::string_view::npos ? "" : body.substr(bar));
        return write(FixFrame(type + "|34=" + std::to_string(++m_seq) + "|49=EXCH|56=" +
                              std::string(targetCompID) + "|52=" + FixNow() + rest));
    }

    bool write(std::string_view bytes) {
        size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t n =
                ::send(m_client, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
            if (n <= 0) {
                return false;
            }
            done += static_cast<size_t>(n);
        }
        return true;
    }

    /// Reads until the received bytes contain `text` (returns them all) or time is up
    /// (returns "").
    std::string readUntil(std::string_view text, std::chrono::milliseconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (m_in.find(text) == std::string::npos) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                deadline - std::chrono::steady_clock::now());
            pollfd p{m_client, POLLIN, 0};
            if (left.count() <= 0 || ::poll(&p, 1, static_cast<int>(left.count())) != 1) {
                return "";
            }
            char buf[4096];
            const ssize_t n = ::recv(m_client, buf, sizeof buf, 0);
            if (n <= 0) {
                return "";
            }
            m_in.append(buf, static_cast<size_t>(n));
        }
        return m_in;
    }

    /// Every complete message received so far of this MsgType, in order.
    std::vector<std::string> received(std::string_view msgType) const {
        std::vector<std::string> out;
        const std::string marker = "\x01"
                                   "35=" +
                                   std::string(msgType) + "\x01";
        size_t start = m_in.find("8=FIX");
        while (start != std::string::npos) {
            const size_t end = m_in.find("\x01"
                                         "10=",
                                         start);
            if (end == std::string::npos) {
                break;
            }
            const std::string msg = m_in.substr(start, end - start + 1);
            if (msg.find(marker) != std::string::npos) {
                out.push_back(msg);
            }
            start = m_in.find("8=FIX", end);
        }
        return out;
    }
    /// Reads for `limit` and returns the messages of this type received by then.
    std::vector<std::string> collect(std::string_view msgType, std::chrono::milliseconds limit) {
        readUntil("\x01"
                  "NEVER=",
                  limit);
        return received(msgType);
    }

    void closeClient() {
        if (m_client >= 0) {
            ::close(m_client);
            m_client = -1;
        }
        m_in.clear();
    }

private:
    int m_listen = -1;
    int m_client = -1;
    int m_port = 0;
    int m_seq = 1;
    std::string m_in;
};

} // namespace wicker::test
