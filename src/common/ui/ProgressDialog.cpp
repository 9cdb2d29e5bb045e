#include "common/ui/ProgressDialog.h"

#include <QProgressDialog>
#include <QString>

namespace wicker {

ProgressDialog::ProgressDialog(QWidget* parent)
    : m_dialog(std::make_unique<QProgressDialog>(parent)) {
    m_dialog->setObjectName(QStringLiteral("frmProgress"));
    m_dialog->setWindowTitle(QStringLiteral("Wicker"));
    m_dialog->setWindowModality(Qt::ApplicationModal);
    m_dialog->setCancelButton(nullptr);
    m_dialog->setMinimumDuration(500); // a short import never flashes a window
    m_dialog->setAutoClose(false);
    m_dialog->setAutoReset(false);
    m_dialog->reset(); // QProgressDialog otherwise shows itself after the minimum duration
}

ProgressDialog::~ProgressDialog() = default;

void ProgressDialog::advance(const std::string& what, size_t done, size_t total) {
    const int max = static_cast<int>(std::min<size_t>(total, 1'000'000'000));
    const int value = static_cast<int>(std::min<size_t>(done, static_cast<size_t>(max)));
    const QString label = QString::fromStdString(what) + QStringLiteral("...");
    if (m_dialog->labelText() != label) {
        m_dialog->setLabelText(label);
    }
    if (m_dialog->maximum() != max) {
        m_dialog->setMaximum(max);
    }
    m_dialog->setValue(value); // modal: also lets the window paint
}

} // namespace wicker
