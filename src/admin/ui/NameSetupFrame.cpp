#include "admin/ui/NameSetupFrame.h"

#include "admin/ui/NameListView.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace wicker {

NameSetupButtons LayOutNameSetup(QDialog& screen, const NameListView& list,
                                 const NameSetupCaptions& captions, QWidget* beside) {
    auto* ok = new QPushButton(QStringLiteral("OK"), &screen);
    ok->setObjectName(QStringLiteral("cmdOK"));
    auto* add = new QPushButton(QString::fromLatin1(captions.add), &screen);
    add->setObjectName(QStringLiteral("cmdAdd"));
    auto* remove = new QPushButton(QString::fromLatin1(captions.remove), &screen);
    remove->setObjectName(QStringLiteral("cmdDelete"));
    auto* cancel = new QPushButton(QStringLiteral("&Cancel"), &screen);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* b : {add, remove, ok, cancel}) {
        b->setAutoDefault(false);
    }

    auto* side = new QVBoxLayout;
    side->addWidget(add);
    side->addWidget(remove);
    if (beside != nullptr) {
        side->addWidget(beside);
    }
    side->addStretch();
    auto* listColumn = new QVBoxLayout;
    listColumn->addWidget(new QLabel(QString::fromLatin1(captions.list), &screen));
    listColumn->addWidget(list.view);
    auto* top = new QHBoxLayout;
    top->addLayout(listColumn);
    top->addLayout(side);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(&screen);
    layout->addLayout(top);
    layout->addLayout(buttons);

    QObject::connect(remove, &QPushButton::clicked, &screen, [list] { RemoveSelectedName(list); });
    QObject::connect(cancel, &QPushButton::clicked, &screen, &QDialog::reject);
    return {ok, add};
}

} // namespace wicker
