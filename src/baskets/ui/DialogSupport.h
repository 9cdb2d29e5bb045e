#pragma once

#include <string>
#include <vector>

#include <QStringList>

class QComboBox;
class QDialog;
class QWidget;

namespace wicker {

/// Puts a dialog 100 twips (7 pixels) below and right of its owner's top-left corner.
void PlaceBelowRight(QDialog& dialog, const QWidget& owner);

/// A combo box that takes typed texts it does not list, without adding them to the list.
QComboBox* EditableCombo(QWidget* parent, const QString& name);

/// Fills a combo box with texts, in order.
void FillCombo(QComboBox& combo, const std::vector<std::string>& texts);

/// Selects the entry equal to `text`; when there is none, adds it first.
void SelectOrAdd(QComboBox& combo, const QString& text);

} // namespace wicker
