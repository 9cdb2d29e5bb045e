#include "app/ui/CommandLine.h"

namespace wicker {

Result<CommandLine> ParseCommandLine(const std::vector<std::string>& args) {
    CommandLine cl;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        // "--opt=value" and "--opt value" both work for the options that take a value.
        std::string name = a;
        std::optional<std::string> inlineValue;
        if (const auto eq = a.find('='); a.rfind("--", 0) == 0 && eq != std::string::npos) {
            name = a.substr(0, eq);
            inlineValue = a.substr(eq + 1);
        }
        const auto value = [&]() -> Result<std::string> {
            std::string v;
            if (inlineValue) {
                v = *inlineValue;
            } else if (i + 1 < args.size()) {
                v = args[++i];
            } else {
                return Error{"Option " + name + " needs a value."};
            }
            if (v.empty()) {
                return Error{"Option " + name + " needs a value."};
            }
            return v;
        };
        if ((name == "--help" || name == "-h") && !inlineValue) {
            cl.help = true;
        } else if ((name == "--version" || name == "-v") && !inlineValue) {
            cl.version = true;
        } else if (name == "--data-dir") {
            Result<std::string> v = value();
            if (!v) {
                return v.error();
            }
            cl.dataDir = std::filesystem::path(v.value());
        } else if (name == "--screenshot") {
            Result<std::string> v = value();
            if (!v) {
                return v.error();
            }
            cl.screenshot = std::filesystem::path(v.value());
        } else if (name == "--account") {
            Result<std::string> v = value();
            if (!v) {
                return v.error();
            }
            cl.account = v.value();
        } else {
            return Error{"Unknown option " + a + ". Try wicker --help."};
        }
    }
    return cl;
}

std::string UsageText() {
    return R"(Usage: wicker [options]

Wicker, basket trading for equity traders.

Options:
  --data-dir DIR     keep baskets.mdb, basket.ini and the legacy files in DIR
                     (created when missing)
  --account NAME     make NAME the default trading account (added when
                     missing) before the window opens
  --screenshot FILE  load the basket of the first quick-load button, let the
                     quotes run for a moment, save a picture of the main window
                     to FILE (PNG) and quit
  --version          show the version and quit
  --help             show this text and quit

Without --data-dir the data folder is $WICKER_HOME, else the program's own
folder when it already holds basket.ini or baskets.mdb, else
$XDG_DATA_HOME/wicker, else ~/.local/share/wicker.

The platform is chosen in basket.ini:
  [Platform]
  Mode=SIM     the built-in simulated market (the default)
  Mode=FIX     a broker or wicker-exchange over FIX (FixHost, FixPort, ...)
)";
}

std::string VersionText() {
#ifdef WICKER_VERSION
    return std::string("wicker ") + WICKER_VERSION;
#else
    return "wicker";
#endif
}

} // namespace wicker
