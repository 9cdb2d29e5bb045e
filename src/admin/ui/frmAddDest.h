#pragma once

#include "admin/ui/AddNameDialog.h"

namespace wicker {

/// "Add Destination": asks for one destination name for the destination screen's list.
class frmAddDest : public AddNameDialog {
    Q_OBJECT

public:
    /// `add` receives the typed text; the destination screen decides what goes in.
    frmAddDest(std::function<void(const std::string&)> add, QWidget* parent = nullptr)
        : AddNameDialog({"frmAddDest", "Add Destination", "New Destination", "txtDest"},
                        std::move(add), parent) {}
};

} // namespace wicker
