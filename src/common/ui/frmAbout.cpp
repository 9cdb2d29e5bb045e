#include "common/ui/frmAbout.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

namespace wicker {
namespace {

QString Text(const std::string& s) {
    return QString::fromStdString(s);
}

QString LicenceList() {
    QString text;
    for (const LibraryLicence& l : Licences()) {
        text += Text(l.name) + QStringLiteral(": ") + Text(l.licence) + QLatin1Char('\n');
    }
    return text;
}

} // namespace

ProgramFacts RuntimeFacts() {
    ProgramFacts f;
    f.version = WICKER_VERSION;
    f.build = BuildDescription();
    f.os = (QSysInfo::prettyProductName() + QStringLiteral(", kernel ") +
            QSysInfo::kernelVersion() + QStringLiteral(", ") + QSysInfo::currentCpuArchitecture())
               .toStdString();
    f.qtVersion = std::string(qVersion()) + " (built with " + QT_VERSION_STR + ")";
    return f;
}

frmAbout::frmAbout(ProgramFacts facts, QWidget* parent)
    : QDialog(parent), m_facts(std::move(facts)) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Wicker"));
    auto* layout = new QVBoxLayout(this);

    auto* title = new QLabel(QStringLiteral("<b>Wicker</b> %1").arg(Text(m_facts.version)), this);
    title->setObjectName(QStringLiteral("lblTitle"));
    layout->addWidget(title);
    auto* about = new QLabel(this);
    about->setObjectName(QStringLiteral("lblFacts"));
    about->setTextInteractionFlags(Qt::TextSelectableByMouse);
    about->setText(QStringLiteral("Basket trading for equity traders.\n\nBuild: %1\nData folder: "
                                  "%2\nPlatform: %3")
                       .arg(Text(m_facts.build), Text(m_facts.dataFolder), Text(m_facts.platform)));
    layout->addWidget(about);

    auto* licences = new QPlainTextEdit(LicenceList(), this);
    licences->setObjectName(QStringLiteral("txtLicences"));
    licences->setReadOnly(true);
    layout->addWidget(licences);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    QPushButton* sysInfo =
        buttons->addButton(QStringLiteral("&System Info..."), QDialogButtonBox::ActionRole);
    sysInfo->setObjectName(QStringLiteral("cmdSysInfo"));
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(sysInfo, &QPushButton::clicked, this, &frmAbout::ShowSystemInfo);
    layout->addWidget(buttons);
    resize(520, 380);
}

void frmAbout::ShowSystemInfo() {
    frmSysInfo info(m_facts, this);
    info.exec();
}

frmSysInfo::frmSysInfo(const ProgramFacts& facts, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmSysInfo"));
    setWindowTitle(QStringLiteral("System Information"));
    auto* layout = new QVBoxLayout(this);
    // Line feeds on screen; the copy keeps CR LF so it pastes whole into any mail client.
    const QString text = Text(SystemInformationText(facts));
    auto* view = new QPlainTextEdit(QString(text).remove(QLatin1Char('\r')), this);
    view->setObjectName(QStringLiteral("txtSysInfo"));
    view->setReadOnly(true);
    layout->addWidget(view);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    QPushButton* copy = buttons->addButton(QStringLiteral("&Copy"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("cmdCopy"));
    connect(copy, &QPushButton::clicked, this,
            [text] { QApplication::clipboard()->setText(text); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
    resize(560, 260);
}

} // namespace wicker
