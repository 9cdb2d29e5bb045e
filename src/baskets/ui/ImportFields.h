#pragma once

#include "baskets/ImportDefaults.h"

#include <string>
#include <vector>

class QComboBox;
class QDialog;
class QFormLayout;
class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QWidget;

namespace wicker {

class Database;
class MessageBoxes;

/// The rows both basket import dialogs ask for: basket and button name, the file with
/// its "..." button, and the default listed and OTC destinations.
struct ImportFields {
    /// Entry of the destination combos that stands for "no default": a line without a
    /// destination is then stored without one.
    static constexpr const char* kNoDestination = "<none>";

    explicit ImportFields(QWidget* parent);

    /// The five rows, laid out for the dialog.
    QFormLayout* form() const;
    /// The row under the dialog: `import` and a "Cancel" that closes the dialog, at the right.
    static QHBoxLayout* ButtonRow(QDialog& dialog, QPushButton* import);
    /// Fills both destination lists (first entry kNoDestination) with the enabled
    /// destinations and selects the defaults; returns the destinations, empty when they
    /// cannot be read (then the trader is told).
    std::vector<std::string> fillDestinations(Database& db, MessageBoxes& boxes,
                                              const ImportDefaults& defaults) const;
    /// The chosen default destination, "" for kNoDestination.
    static std::string DefaultText(const QComboBox& combo);

    QLineEdit* name;
    QLineEdit* button;
    QLineEdit* fileName;
    QComboBox* listed;
    QComboBox* otc;
    QPushButton* open;
};

} // namespace wicker
