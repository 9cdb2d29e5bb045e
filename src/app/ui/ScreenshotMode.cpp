#include "app/ui/ScreenshotMode.h"

#include <iostream>

#include <QAbstractItemView>
#include <QPixmap>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

namespace wicker {

namespace {

constexpr int kLinesSent = 6;
constexpr int kSendAfterMs = 3000;

} // namespace

ScreenshotMode::ScreenshotMode(QWidget& mainWindow, std::filesystem::path file, bool simulated,
                               int delayMs)
    : m_window(mainWindow), m_file(std::move(file)) {
    if (auto* load = m_window.findChild<QPushButton*>(QStringLiteral("cmdLoad_1"));
        load != nullptr && load->isVisible()) {
        load->click();
        if (simulated) {
            QTimer::singleShot(kSendAfterMs, this, [this] { sendPart(); });
        }
    }
    QTimer::singleShot(delayMs, this, [this] { take(); });
}

void ScreenshotMode::sendPart() {
    auto* stocks = m_window.findChild<QAbstractItemView*>(QStringLiteral("lvStocks"));
    auto* buyAsk = m_window.findChild<QPushButton*>(QStringLiteral("cmdExecuteBasket_1"));
    if (stocks == nullptr || buyAsk == nullptr || !buyAsk->isEnabled()) {
        return;
    }
    QAbstractItemModel* model = stocks->model();
    for (int row = kLinesSent; row < model->rowCount(); ++row) {
        model->setData(model->index(row, 0), Qt::Unchecked, Qt::CheckStateRole);
    }
    buyAsk->click();
}

void ScreenshotMode::take() {
    // The size the window opens at on a desktop, whatever screen the run has.
    m_window.showNormal();
    m_window.resize(1180, 760);
    const QPixmap picture = m_window.grab();
    m_saved = picture.save(QString::fromStdString(m_file.string()), "PNG");
    if (!m_saved) {
        std::cerr << "wicker: the picture could not be saved to " << m_file.string() << '\n';
    }
    m_window.close();
}

} // namespace wicker
