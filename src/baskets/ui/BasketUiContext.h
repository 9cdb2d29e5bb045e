#pragma once

#include "baskets/BasketIndexStore.h"
#include "baskets/FileChooser.h"
#include "baskets/ImportDefaults.h"
#include "baskets/MainScreenLink.h"
#include "common/MessageBox.h"
#include "storage/Database.h"

#include <filesystem>
#include <functional>

namespace wicker {

/// What the basket setup screen and its dialogs work with, handed in by the main screen.
struct BasketUiContext {
    Database& db;
    MessageBoxes& boxes;
    BasketIndexStore& index;
    MainScreenLink& main;
    FileChooser& files;
    std::filesystem::path appFolder; ///< holds basket.ini and the Baskets folder
    /// Reads the import dialog's default destinations when it opens; the program passes
    /// [folder] { return ReadImportDefaults(folder / "basket.ini"); }.
    std::function<ImportDefaults()> importDefaults;
};

} // namespace wicker
