#pragma once

class QDialog;
class QPushButton;
class QWidget;

namespace wicker {

struct NameListView;

/// Captions of a screen that edits a list of names (accounts, destinations).
struct NameSetupCaptions {
    const char* list;   ///< the label above the list
    const char* add;    ///< the add button (cmdAdd)
    const char* remove; ///< the delete button (cmdDelete)
};

/// The buttons a name setup screen connects to its own work.
struct NameSetupButtons {
    QPushButton* ok;
    QPushButton* add;
};

/// Lays out a screen that edits a list of names: the list under its caption, the add and
/// delete buttons and `beside` (when given) at its right, OK and "&Cancel" below. The
/// buttons are created after the screen's own boxes, OK first, which is the order Tab
/// walks them. Delete removes the selected name; Cancel closes the screen.
NameSetupButtons LayOutNameSetup(QDialog& screen, const NameListView& list,
                                 const NameSetupCaptions& captions, QWidget* beside = nullptr);

} // namespace wicker
