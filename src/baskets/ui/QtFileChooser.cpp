#include "baskets/ui/QtFileChooser.h"

#include "baskets/ui/UiText.h"

#include <QFileDialog>

namespace wicker {
namespace {

std::optional<std::string> Chosen(const QString& path) {
    if (path.isEmpty()) {
        return std::nullopt;
    }
    return ToStd(path);
}

} // namespace

std::optional<std::string> QtFileChooser::openFile(const std::string& title,
                                                   const std::string& filter,
                                                   const std::string& startPath) {
    return Chosen(QFileDialog::getOpenFileName(m_parent, ToQ(title), ToQ(startPath), ToQ(filter)));
}

std::optional<std::string> QtFileChooser::saveFile(const std::string& title,
                                                   const std::string& filter,
                                                   const std::string& startPath) {
    return Chosen(QFileDialog::getSaveFileName(m_parent, ToQ(title), ToQ(startPath), ToQ(filter),
                                               nullptr, QFileDialog::DontConfirmOverwrite));
}

} // namespace wicker
