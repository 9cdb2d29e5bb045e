#pragma once

#include "baskets/FileChooser.h"

class QWidget;

namespace wicker {

/// The file chooser of the program: the desktop's file dialog.
class QtFileChooser : public FileChooser {
public:
    explicit QtFileChooser(QWidget* parent) : m_parent(parent) {}
    std::optional<std::string> openFile(const std::string& title, const std::string& filter,
                                        const std::string& startPath) override;
    std::optional<std::string> saveFile(const std::string& title, const std::string& filter,
                                        const std::string& startPath) override;

private:
    QWidget* m_parent;
};

} // namespace wicker
