#pragma once

#include "trading/orders/SendLimits.h"

#include <string>
#include <vector>

class QWidget;

namespace wicker {

/// The dialog of a send that breaks a pre-trade limit: one row per offending line and
/// limit. "Send Anyway" is enabled only once the basket's name is typed exactly, so an
/// override is never a reflex click; Cancel (the default) and Esc send nothing.
class LimitOverrideDialog final : public LimitOverride {
public:
    explicit LimitOverrideDialog(QWidget* parent) : m_parent(parent) {}
    bool ConfirmOverride(const std::string& basketName, const std::string& sideWord,
                         const std::vector<LimitBreach>& breaches) override;

private:
    QWidget* m_parent;
};

} // namespace wicker
