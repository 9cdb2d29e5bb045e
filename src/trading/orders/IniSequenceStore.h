#pragma once

#include "trading/orders/SendSequence.h"

#include <filesystem>

namespace wicker {

/// SequenceStore over the settings file: section "Sequence", key "BasketNum".
class IniSequenceStore final : public SequenceStore {
public:
    explicit IniSequenceStore(std::filesystem::path iniPath) : m_path(std::move(iniPath)) {}
    Result<void> SaveBasketNum(int16_t nextBasketSeq) override;

private:
    std::filesystem::path m_path;
};

} // namespace wicker
