#pragma once

#include <filesystem>

#include <QDialog>

class QLineEdit;

namespace wicker {

class MessageBoxes;
class SendSequence;

/// "Reset Basket/Trade Sequence Number": shows the next basket and trade numbers and
/// sets either one, in the main screen's counters and in basket.ini.
class frmResetSeq : public QDialog {
    Q_OBJECT

public:
    frmResetSeq(MessageBoxes& boxes, SendSequence& sequence, std::filesystem::path appFolder,
                QWidget* parent = nullptr);

private:
    void setBasketNumber();
    void setTradeNumber();

    MessageBoxes& m_boxes;
    SendSequence& m_sequence;
    std::filesystem::path m_appFolder;
    QLineEdit* m_nextBasket;
    QLineEdit* m_setBasket;
    QLineEdit* m_nextTrade;
    QLineEdit* m_setTrade;
};

} // namespace wicker
