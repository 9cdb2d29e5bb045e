#pragma once

// Plain records exchanged with the QuickFIX engine. This header is shared by the C++14
// engine and the C++20 rest of Wicker, so it includes neither QuickFIX nor Qt and uses
// nothing newer than C++14.

#include <cstddef>
#include <string>
#include <vector>

namespace wicker {

/// One tag=value pair of a FIX message.
struct FixField {
    int tag = 0;
    std::string value;
};

/// The entries of one repeating group, each entry its own list of fields.
struct FixGroup {
    int countTag = 0;
    std::vector<std::vector<FixField>> entries;
};

/// An application or session-level message without its framing (BeginString, BodyLength,
/// CheckSum) and without the header fields that the session fills in itself.
struct FixMessage {
    std::string msgType;
    std::vector<FixField> fields;
    std::vector<FixGroup> groups;
    int msgSeqNum = 0;    ///< set on received messages (and on sent ones after sending)
    bool possDup = false; ///< PossDupFlag(43)=Y on a received message

    /// The value of the first field with this tag in the body, or nullptr.
    const std::string* find(int tag) const;
    /// The entries of the group with this count tag, or nullptr.
    const FixGroup* findGroup(int countTag) const;
    void add(int tag, std::string value);
};

/// A received message read where it lies: its type and body fields by tag, nothing copied.
/// Valid only for the call it is handed to.
class FixFieldReader {
public:
    virtual const std::string& msgType() const = 0;
    /// The value of the first body field with this tag, or nullptr.
    virtual const std::string* find(int tag) const = 0;
    /// The same for `count` tags in ascending order at once, into `values` (nullptr for an
    /// absent one): a reader that can, reads the message once for all of them.
    virtual void findAll(const int* tags, std::size_t count, const std::string** values) const;
    /// The whole message, groups, MsgSeqNum and PossDupFlag included.
    virtual FixMessage copy() const = 0;

protected:
    ~FixFieldReader() {}
};

/// Reads a FixMessage.
class FixMessageReader final : public FixFieldReader {
public:
    explicit FixMessageReader(const FixMessage& message) : m_message(message) {}
    const std::string& msgType() const override { return m_message.msgType; }
    const std::string* find(int tag) const override { return m_message.find(tag); }
    FixMessage copy() const override { return m_message; }

private:
    const FixMessage& m_message;
};

/// Identity and transport of one FIX session.
struct FixSessionConfig {
    std::string beginString = "FIX.4.2";
    std::string senderCompID;
    std::string targetCompID;
    std::string host = "127.0.0.1"; ///< initiator: where to connect
    int port = 0;
    int heartBtInt = 30;
    int reconnectInterval = 5;
    int logonTimeout = 10;
    std::string storePath; ///< FileStore folder; empty = memory store
    std::string logPath;   ///< FileLog folder; empty = no log
    bool resetOnLogon = false;
    /// The session carries market data: its repeating groups are declared for parsing. A
    /// session for orders only parses without them (a dictionary costs on every report).
    bool marketData = true;
    /// A QuickFIX settings file that replaces everything above but the store and log
    /// paths when they are given there; empty = none.
    std::string settingsFile;
};

} // namespace wicker
