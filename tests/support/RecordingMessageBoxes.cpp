#include "RecordingMessageBoxes.h"

namespace wicker::test {

MsgAnswer RecordingMessageBoxes::show(const MessageRequest& request) {
    m_shown.push_back(request);
    if (!m_answers.empty()) {
        const MsgAnswer a = m_answers.front();
        m_answers.pop_front();
        return a;
    }
    switch (request.buttons) {
    case MsgButtons::YesNo:
    case MsgButtons::YesNoCancel:
        return request.defaultButton == MsgDefault::Second ? MsgAnswer::No : MsgAnswer::Yes;
    case MsgButtons::OkCancel:
        return request.defaultButton == MsgDefault::Second ? MsgAnswer::Cancel : MsgAnswer::Ok;
    case MsgButtons::Ok:
        break;
    }
    return MsgAnswer::Ok;
}

std::vector<std::string> RecordingMessageBoxes::texts() const {
    std::vector<std::string> out;
    for (const auto& m : m_shown) {
        out.push_back(m.text);
    }
    return out;
}

} // namespace wicker::test
