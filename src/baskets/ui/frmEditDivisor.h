#pragma once

#include "baskets/BasketIndexStore.h"

#include <functional>
#include <string>

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace wicker {

class MessageBoxes;

/// "Edit Basket": changes a basket's divisor and index type.
class frmEditDivisor : public QDialog {
    Q_OBJECT

public:
    /// `onSaved` receives the stored divisor and index type for the setup screen's row.
    frmEditDivisor(MessageBoxes& boxes, BasketIndexStore& index, std::string basketName,
                   const std::string& buttonName, double divisor, const std::string& indexType,
                   std::function<void(double, const std::string&)> onSaved,
                   QWidget* parent = nullptr);

private:
    void save();

    MessageBoxes& m_boxes;
    BasketIndexStore& m_index;
    std::string m_basketName;
    std::function<void(double, const std::string&)> m_onSaved;
    QLineEdit* m_divisor;
    QComboBox* m_indexType;
};

} // namespace wicker
