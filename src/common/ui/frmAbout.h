#pragma once

#include "common/ProgramInfo.h"

#include <QDialog>

namespace wicker {

/// The facts this process can tell about itself: version, build, operating system, Qt.
/// The caller adds the data folder, the platform and the database library.
ProgramFacts RuntimeFacts();

/// "About Wicker": name, version, build, data folder, platform, the libraries' licences,
/// and "System Info..." for a text a trader can copy into a support request.
class frmAbout final : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(ProgramFacts facts, QWidget* parent = nullptr);

private:
    void ShowSystemInfo();

    ProgramFacts m_facts;
};

/// The system information as selectable text with a "Copy" button.
class frmSysInfo final : public QDialog {
    Q_OBJECT
public:
    explicit frmSysInfo(const ProgramFacts& facts, QWidget* parent = nullptr);
};

} // namespace wicker
