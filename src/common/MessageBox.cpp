#include "common/MessageBox.h"

namespace wicker {

MessageRequest MessageFromFlags(const std::string& text, int flags, const std::string& title) {
    MessageRequest r;
    r.text = text;
    r.title = title;
    switch (flags & 0x7) {
    case 1:
        r.buttons = MsgButtons::OkCancel;
        break;
    case 3:
        r.buttons = MsgButtons::YesNoCancel;
        break;
    case 4:
        r.buttons = MsgButtons::YesNo;
        break;
    default:
        r.buttons = MsgButtons::Ok;
        break;
    }
    switch (flags & 0x70) {
    case 16:
        r.icon = MsgIcon::Critical;
        break;
    case 32:
        r.icon = MsgIcon::Question;
        break;
    case 48:
        r.icon = MsgIcon::Exclamation;
        break;
    case 64:
        r.icon = MsgIcon::Information;
        break;
    default:
        r.icon = MsgIcon::None;
        break;
    }
    r.defaultButton = (flags & 0x300) == 256 ? MsgDefault::Second : MsgDefault::First;
    return r;
}

MsgAnswer MessageBoxes::show(const std::string& text, int flags, const std::string& title) {
    return show(MessageFromFlags(text, flags, title));
}

} // namespace wicker
