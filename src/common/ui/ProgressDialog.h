#pragma once

#include "common/Progress.h"

#include <memory>

class QProgressDialog;
class QWidget;

namespace wicker {

/// Shows long work in a modal progress window that appears only when the work takes
/// longer than a moment. No Cancel: stopping half-way is what the work must survive,
/// not a choice offered.
class ProgressDialog final : public Progress {
public:
    explicit ProgressDialog(QWidget* parent = nullptr);
    ~ProgressDialog() override;
    ProgressDialog(const ProgressDialog&) = delete;
    ProgressDialog& operator=(const ProgressDialog&) = delete;

    void advance(const std::string& what, size_t done, size_t total) override;

private:
    std::unique_ptr<QProgressDialog> m_dialog;
};

} // namespace wicker
