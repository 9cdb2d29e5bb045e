#pragma once

#include <filesystem>

#include <QObject>

class QWidget;

namespace wicker {

/// --screenshot: loads the basket of the first quick-load button, lets the quotes run for
/// a few seconds, saves a picture of the main window and closes it (which ends the program).
class ScreenshotMode final : public QObject {
    Q_OBJECT

public:
    ScreenshotMode(QWidget& mainWindow, std::filesystem::path file, int delayMs = 3000);

    bool saved() const { return m_saved; }

private:
    void take();

    QWidget& m_window;
    std::filesystem::path m_file;
    bool m_saved = false;
};

} // namespace wicker
