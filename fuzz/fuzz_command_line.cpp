// The command line and the choice of data folder. The input is NUL-separated words: the
// arguments, then after an empty word the values of WICKER_HOME, XDG_DATA_HOME and HOME.
// Property: any arguments parse or are refused with a message that names what is wrong,
// never a crash; a folder given with --data-dir is used as given; without it the folder
// is always an absolute path, whatever the environment holds.
#include "FuzzSupport.h"
#include "app/ui/CommandLine.h"
#include "common/AppFolder.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace wicker;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> args;
    std::map<std::string, std::string> env;
    const char* const names[] = {"WICKER_HOME", "XDG_DATA_HOME", "HOME"};
    bool inEnv = false;
    size_t next = 0;
    size_t start = 0;
    while (start <= bytes.size()) {
        const size_t end = std::min(bytes.find('\0', start), bytes.size());
        const std::string word = bytes.substr(start, end - start);
        if (!inEnv && word.empty() && end < bytes.size()) {
            inEnv = true;
        } else if (!inEnv) {
            args.push_back(word);
        } else if (next < 3) {
            env[names[next++]] = word;
        }
        start = end + 1;
    }

    const Result<CommandLine> parsed = ParseCommandLine(args);
    if (!parsed) {
        const std::string& why = parsed.error().message;
        fuzz::Check(why.find("Option ") == 0 || why.find("Unknown option ") == 0);
        return 0;
    }
    const CommandLine& cl = parsed.value();
    fuzz::Check(!cl.dataDir || !cl.dataDir->empty());
    fuzz::Check(!cl.screenshot || !cl.screenshot->empty());
    const auto lookup = [&](const char* name) -> std::optional<std::string> {
        const auto it = env.find(name);
        return it == env.end() ? std::nullopt : std::optional<std::string>(it->second);
    };
    const auto folder = ResolveAppFolder({cl.dataDir, lookup, "/nonexistent-wicker-fuzz"});
    if (cl.dataDir) {
        fuzz::Check(folder == *cl.dataDir);
    } else if (!lookup("WICKER_HOME").value_or("").empty()) {
        fuzz::Check(folder == *lookup("WICKER_HOME"));
    } else {
        fuzz::Check(folder.is_absolute());
    }
    return 0;
}
