#pragma once

#include <functional>
#include <string>

#include <QDialog>

class QLineEdit;

namespace wicker {

/// The small dialog that asks for one new name (account or destination). "&Add" hands
/// the typed text to the owner's list and closes; Enter in the box presses it.
class AddNameDialog : public QDialog {
    Q_OBJECT

public:
    struct Names {
        const char* form;    ///< objectName of the dialog
        const char* caption; ///< window title
        const char* label;   ///< text above the box
        const char* box;     ///< objectName of the text box
    };

    AddNameDialog(const Names& names, std::function<void(const std::string&)> add, QWidget* parent);

private:
    void addName();

    std::function<void(const std::string&)> m_add;
    QLineEdit* m_name;
};

} // namespace wicker
