#pragma once

#include <filesystem>

#include <QObject>

class QWidget;

namespace wicker {

/// --screenshot: loads the basket of the first quick-load button, lets the quotes run for
/// a few seconds, saves a picture of the main window and closes it (which ends the program).
/// On the simulated market it also sends the first lines of the basket with "BUY ASK", so
/// the picture shows a basket partly sent and partly filled; never on a real connection.
class ScreenshotMode final : public QObject {
    Q_OBJECT

public:
    ScreenshotMode(QWidget& mainWindow, std::filesystem::path file, bool simulated,
                   int delayMs = 5000);

    bool saved() const { return m_saved; }

private:
    void take();
    void sendPart();

    QWidget& m_window;
    std::filesystem::path m_file;
    bool m_saved = false;
};

} // namespace wicker
