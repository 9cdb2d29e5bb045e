#include "app/CreatePlatform.h"

#include "platform/PlatformSettings.h"
#include "platform/sim/SimPlatform.h"

#if __has_include("platform/fix/FixPlatform.h")
#include "platform/fix/FixPlatform.h"
#define WICKER_HAS_FIX 1
#endif

namespace wicker {

Result<std::unique_ptr<Platform>> CreatePlatform(const std::filesystem::path& dataFolder,
                                                 const Clock& clock,
                                                 std::vector<std::string>& notes) {
    PlatformSettings settings = ReadPlatformSettings(dataFolder / "basket.ini");
    notes.insert(notes.end(), settings.messages.begin(), settings.messages.end());
    if (settings.mode == PlatformMode::Fix) {
#ifdef WICKER_HAS_FIX
        return CreateFixPlatform(dataFolder, clock);
#else
        return Error{"FIX mode is not available in this build. Set Mode=SIM in section "
                     "[Platform] of basket.ini to trade on the simulated market."};
#endif
    }
    auto sim = std::make_unique<SimPlatform>(settings.sim, clock);
    if (Result<void> kept = sim->KeepBook(dataFolder / kSimBookFileName); !kept) {
        notes.push_back(kept.error().message);
    }
    return std::unique_ptr<Platform>(std::move(sim));
}

} // namespace wicker
