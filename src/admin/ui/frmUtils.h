#pragma once

#include <filesystem>
#include <functional>

#include <QDialog>

namespace wicker {

class Database;
class MessageBoxes;
class SendSequence;
class TradingDataReset;

/// "Basket Utilities": database test, initial data again, clearing the trading data,
/// closing every tracked order, and the sequence numbers (frmResetSeq).
class frmUtils : public QDialog {
    Q_OBJECT

public:
    frmUtils(Database& db, MessageBoxes& boxes, TradingDataReset& trading, SendSequence& sequence,
             std::filesystem::path appFolder, QWidget* parent = nullptr);

private:
    /// Runs one tool; an error it raises is shown, as every handler of the screen did.
    void run(const std::function<void()>& tool);
    void openResetSeq();

    Database& m_db;
    MessageBoxes& m_boxes;
    TradingDataReset& m_trading;
    SendSequence& m_sequence;
    std::filesystem::path m_appFolder;
};

} // namespace wicker
