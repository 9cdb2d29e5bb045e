#pragma once

#include "common/MessageBox.h"

#include <deque>
#include <vector>

namespace wicker::test {

/// Records every message shown and answers from a script; with no scripted answer it
/// takes the default button, as pressing Enter would.
class RecordingMessageBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest& request) override;

    /// Queues the answer to the next message.
    void answerNext(MsgAnswer a) { m_answers.push_back(a); }

    const std::vector<MessageRequest>& shown() const { return m_shown; }
    /// Texts of every message shown, in order.
    std::vector<std::string> texts() const;
    void clear() { m_shown.clear(); }

private:
    std::deque<MsgAnswer> m_answers;
    std::vector<MessageRequest> m_shown;
};

} // namespace wicker::test
