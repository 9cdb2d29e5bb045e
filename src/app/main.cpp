#include "app/CreatePlatform.h"
#include "app/ui/CommandLine.h"
#include "app/ui/ScreenshotMode.h"
#include "common/AppFolder.h"
#include "common/Clock.h"
#include "common/ui/QtMessageBoxes.h"
#include "platform/sim/SimPlatform.h"
#include "storage/FolderLock.h"
#include "storage/IniFileIo.h"
#include "trading/TradingDesk.h"
#include "trading/ui/frmMain.h"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include <QApplication>

namespace {

using namespace wicker;

std::filesystem::path ExecutableDir(const char* argv0) {
    std::error_code ec;
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec || self.empty()) {
        self = std::filesystem::absolute(argv0, ec);
    }
    return self.parent_path();
}

/// Messages of an unattended run (--screenshot): written to the error stream and answered
/// with their default button, so no box waits for a trader who is not there.
class StderrMessageBoxes final : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest& request) override {
        std::cerr << "wicker: [" << request.title << "] " << request.text << '\n';
        const bool second = request.defaultButton == MsgDefault::Second;
        switch (request.buttons) {
        case MsgButtons::YesNo:
        case MsgButtons::YesNoCancel:
            return second ? MsgAnswer::No : MsgAnswer::Yes;
        case MsgButtons::OkCancel:
            return second ? MsgAnswer::Cancel : MsgAnswer::Ok;
        case MsgButtons::Ok:
            break;
        }
        return MsgAnswer::Ok;
    }
};

/// Shows a message that ends the program before or during start-up.
int Fail(MessageBoxes& boxes, const std::string& text) {
    std::cerr << "wicker: " << text << '\n';
    boxes.show(text, 16, "Wicker");
    return 1;
}

int Run(int argc, char** argv, const CommandLine& cl) {
    const std::filesystem::path folder =
        ResolveAppFolder({cl.dataDir, &ProcessEnv, ExecutableDir(argc > 0 ? argv[0] : "wicker")});

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Wicker"));
    QApplication::setApplicationVersion(QStringLiteral(WICKER_VERSION));
    QtMessageBoxes windowBoxes;
    StderrMessageBoxes unattendedBoxes;
    MessageBoxes& boxes = cl.screenshot ? static_cast<MessageBoxes&>(unattendedBoxes)
                                        : static_cast<MessageBoxes&>(windowBoxes);

    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    if (ec || !std::filesystem::is_directory(folder)) {
        return Fail(boxes, "The data folder " + folder.string() +
                               " cannot be created: " + ec.message() + ".");
    }
    // Taken before any file of the folder is opened for writing, held until Run returns.
    Result<FolderLock> lock = FolderLock::Acquire(folder);
    if (!lock) {
        return Fail(boxes, lock.error().message);
    }
    // A settings file that cannot be read is left exactly as it is: no start, no write.
    const IniFileContent ini = ReadIniFile(folder / "basket.ini");
    if (ini.state == IniFileContent::State::Unreadable) {
        return Fail(boxes, "The settings file " + (folder / "basket.ini").string() +
                               " cannot be read (" + ini.error +
                               "). Wicker does not start, so that the file is not changed.");
    }

    SystemClock clock;
    std::vector<std::string> notes;
    Result<std::unique_ptr<Platform>> made = CreatePlatform(folder, clock, notes);
    if (!made) {
        return Fail(boxes, made.error().message);
    }
    std::unique_ptr<Platform> platform = std::move(made).value();

    int exitCode = 0;
    {
        TradingDesk desk(*platform, boxes, clock, folder);
        frmMain window(desk, *platform, boxes);
        windowBoxes.setParent(&window);
        if (Result<void> loaded = window.FormLoad(); !loaded) {
            windowBoxes.setParent(nullptr);
            platform->Stop();
            return Fail(boxes, loaded.error().message);
        }
        if (cl.account) {
            desk.ConfirmAccount(*cl.account);
        }
        if (!notes.empty()) {
            std::string text;
            for (const std::string& n : notes) {
                text += n + "\r\n";
            }
            boxes.show(text, 48, "Platform Settings");
        }
        if (Result<void> started = platform->Start(); !started) {
            window.FormUnload();
            windowBoxes.setParent(nullptr);
            return Fail(boxes, started.error().message);
        }
        window.show();
        std::unique_ptr<ScreenshotMode> screenshot;
        if (cl.screenshot) {
            const bool simulated = dynamic_cast<const SimPlatform*>(platform.get()) != nullptr;
            screenshot = std::make_unique<ScreenshotMode>(window, *cl.screenshot, simulated);
        }
        exitCode = QApplication::exec();
        if (screenshot && !screenshot->saved()) {
            exitCode = 1;
        }
        // No platform thread may reach the window once it is gone.
        platform->Stop();
        window.FormUnload();
        windowBoxes.setParent(nullptr);
    }
    return exitCode;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + (argc > 0 ? 1 : 0), argv + argc);
    const wicker::Result<wicker::CommandLine> cl = wicker::ParseCommandLine(args);
    if (!cl) {
        std::cerr << "wicker: " << cl.error().message << '\n';
        return 2;
    }
    if (cl->help) {
        std::cout << wicker::UsageText();
        return 0;
    }
    if (cl->version) {
        std::cout << wicker::VersionText() << '\n';
        return 0;
    }
    return Run(argc, argv, cl.value());
}
