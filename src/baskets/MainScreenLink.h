#pragma once

#include <cstdint>
#include <string>

namespace wicker {

/// What the basket screens ask of the main screen after they changed stored baskets.
/// The main screen implements it; the basket screens never reach into its widgets.
class MainScreenLink {
public:
    virtual ~MainScreenLink() = default;
    /// Loads the loaded basket again by its name (its definition changed).
    virtual void ReloadCurrentBasket() = 0;
    /// Fills the list of basket names again.
    virtual void LoadBasketList() = 0;
    /// Sets up the quick-load basket buttons again.
    virtual void LoadButtonValues() = 0;
    /// Applies the order-button display again.
    virtual void LoadButtonDisplay() = 0;
    /// Records index shares read from an imported file for a basket and symbol,
    /// replacing an earlier entry.
    virtual void RecordIndexShares(int32_t basketNum, const std::string& symbol,
                                   int32_t shares) = 0;
};

} // namespace wicker
