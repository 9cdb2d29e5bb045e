#pragma once

#include <string>

namespace wicker {

/// YesNoCancel: Escape answers Cancel; the default button is Yes or No as asked.
enum class MsgButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgDefault { First, Second };
enum class MsgAnswer { Ok, Cancel, Yes, No };

/// One message box: what is shown and how the user may answer.
struct MessageRequest {
    std::string text;
    std::string title;
    MsgButtons buttons = MsgButtons::Ok;
    MsgIcon icon = MsgIcon::None;
    MsgDefault defaultButton = MsgDefault::First;
    bool operator==(const MessageRequest&) const = default;
};

/// Shows modal messages. The program uses a QMessageBox implementation; tests use a
/// recording fake with scripted answers. Logic never shows a widget itself.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    virtual MsgAnswer show(const MessageRequest& request) = 0;

    /// The classic flag form: 0 OK, 1 OK/Cancel, 3 Yes/No/Cancel, 4 Yes/No; +16 critical, +32
    /// question, +48 exclamation, +64 information; +256 second button default (292 = Yes/No,
    /// question, No default).
    MsgAnswer show(const std::string& text, int flags, const std::string& title);
};

/// Decodes the classic flag value into a request.
MessageRequest MessageFromFlags(const std::string& text, int flags, const std::string& title);

} // namespace wicker
