#pragma once

#include "platform/QVXOrderStruct.h"
#include "platform/QVXQuoteStruct.h"

#include <string>

namespace wicker {

/// The handlers of the platform's order-event object (m_QVXEvents). Called on the thread
/// that drains the platform's event queue, the UI thread in the program.
class QVXEvents {
public:
    virtual ~QVXEvents() = default;
    virtual void OnQVXOrderUpdate(const QVXOrderStruct& structOrderUpdate) = 0;
    virtual void OnQVXOrderReject(const QVXRejectStruct& structOrderReject) = 0;
    virtual void OnQVXOrderWarning(const QVXOrderWarning& warning) = 0;
    virtual void OnQVXShutdown() = 0;
    /// The link to the broker came up or went down; `text` is for the status bar.
    virtual void OnPlatformStatus(bool online, const std::string& text) = 0;
};

/// The handlers of the platform's quote object (cQuotes).
class QVXQuoteEvents {
public:
    virtual ~QVXQuoteEvents() = default;
    virtual void OnQVXQuoteSnap(const QVXQuoteStruct& structQuoteSnap) = 0;
    virtual void OnQVXQuoteUpdate(const QVXQuoteStruct& structQuoteUpdate) = 0;
};

} // namespace wicker
