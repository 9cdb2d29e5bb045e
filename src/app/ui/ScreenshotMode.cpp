#include "app/ui/ScreenshotMode.h"

#include <iostream>

#include <QPixmap>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

namespace wicker {

ScreenshotMode::ScreenshotMode(QWidget& mainWindow, std::filesystem::path file, int delayMs)
    : m_window(mainWindow), m_file(std::move(file)) {
    if (auto* load = m_window.findChild<QPushButton*>(QStringLiteral("cmdLoad_1"));
        load != nullptr && load->isVisible()) {
        load->click();
    }
    QTimer::singleShot(delayMs, this, [this] { take(); });
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
