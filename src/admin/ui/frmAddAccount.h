#pragma once

#include "admin/ui/AddNameDialog.h"

namespace wicker {

/// "Add Account": asks for one account name for the account screen's list.
class frmAddAccount : public AddNameDialog {
    Q_OBJECT

public:
    /// `add` receives the typed text; the account screen decides what goes in.
    frmAddAccount(std::function<void(const std::string&)> add, QWidget* parent = nullptr)
        : AddNameDialog({"frmAddAccount", "Add Account", "New Account Name", "txtAccount"},
                        std::move(add), parent) {}
};

} // namespace wicker
