#pragma once

#include <vector>

class QDialog;
class QFormLayout;
class QPushButton;
class QWidget;

namespace wicker {

/// Caption and object names of the two buttons under an entry dialog's form.
struct FormButtonNames {
    const char* caption;    ///< the main button's caption
    const char* name;       ///< the main button's object name
    const char* cancelName; ///< object name of "Cancel"
};

/// Finishes an entry dialog whose boxes exist already: creates the main button and
/// "Cancel" (so Tab reaches them after the boxes), puts `form` above them, lets Enter in
/// any of `enterBoxes` press the main button and lets Cancel close the dialog. Returns
/// the main button for the dialog to connect.
QPushButton* AddFormButtons(QDialog& dialog, QFormLayout* form, const FormButtonNames& names,
                            const std::vector<QWidget*>& enterBoxes);

} // namespace wicker
