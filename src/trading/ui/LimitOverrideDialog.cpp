#include "trading/ui/LimitOverrideDialog.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace wicker {

namespace {

QString Q(const std::string& text) {
    return QString::fromStdString(text);
}

QTableWidget* BreachTable(QWidget* parent, const std::vector<LimitBreach>& breaches) {
    auto* table = new QTableWidget(static_cast<int>(breaches.size()), 3, parent);
    table->setObjectName(QStringLiteral("lvBreaches"));
    table->setHorizontalHeaderLabels(
        {QStringLiteral("Line"), QStringLiteral("Limit"), QStringLiteral("Why")});
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    for (int row = 0; row < table->rowCount(); ++row) {
        const LimitBreach& b = breaches[static_cast<size_t>(row)];
        table->setItem(row, 0, new QTableWidgetItem(Q(b.line)));
        table->setItem(row, 1, new QTableWidgetItem(Q(b.limit)));
        table->setItem(row, 2, new QTableWidgetItem(Q(b.text)));
    }
    table->resizeColumnsToContents();
    return table;
}

} // namespace

bool LimitOverrideDialog::ConfirmOverride(const std::string& basketName,
                                          const std::string& sideWord,
                                          const std::vector<LimitBreach>& breaches) {
    QDialog dialog(m_parent);
    dialog.setObjectName(QStringLiteral("frmLimitOverride"));
    dialog.setWindowTitle(QStringLiteral("Basket Breaks Limits"));
    auto* layout = new QVBoxLayout(&dialog);
    auto* intro = new QLabel(Q("This " + sideWord + " of basket " + basketName +
                               " breaks the trading limits below. Nothing has been sent."),
                             &dialog);
    intro->setWordWrap(true);
    layout->addWidget(intro);
    layout->addWidget(BreachTable(&dialog, breaches), 1);
    layout->addWidget(
        new QLabel(Q("To send it anyway, type the basket name (" + basketName + "):"), &dialog));
    auto* typed = new QLineEdit(&dialog);
    typed->setObjectName(QStringLiteral("txtBasketName"));
    layout->addWidget(typed);

    auto* buttons = new QDialogButtonBox(&dialog);
    QPushButton* send =
        buttons->addButton(QStringLiteral("Send Anyway"), QDialogButtonBox::AcceptRole);
    send->setObjectName(QStringLiteral("cmdSendAnyway"));
    send->setEnabled(false);
    send->setAutoDefault(false);
    QPushButton* cancel = buttons->addButton(QDialogButtonBox::Cancel);
    cancel->setDefault(true);
    layout->addWidget(buttons);
    QObject::connect(
        typed, &QLineEdit::textChanged, send,
        [send, name = Q(basketName)](const QString& text) { send->setEnabled(text == name); });
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    dialog.resize(720, 360);
    typed->setFocus();
    return dialog.exec() == QDialog::Accepted && typed->text() == Q(basketName);
}

} // namespace wicker
