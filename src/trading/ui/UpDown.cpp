#include "trading/ui/UpDown.h"

#include <QToolButton>
#include <QVBoxLayout>

namespace wicker {
namespace {

QToolButton* ArrowButton(QWidget* parent, Qt::ArrowType arrow, const QString& name) {
    auto* b = new QToolButton(parent);
    b->setObjectName(name);
    b->setArrowType(arrow);
    b->setAutoRepeat(true);
    b->setFocusPolicy(Qt::NoFocus);
    b->setFixedSize(16, 11);
    return b;
}

} // namespace

UpDown::UpDown(const QString& name, QWidget* parent)
    : QWidget(parent), m_up(ArrowButton(this, Qt::UpArrow, name + QStringLiteral("_Up"))),
      m_down(ArrowButton(this, Qt::DownArrow, name + QStringLiteral("_Down"))) {
    setObjectName(name);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_up);
    layout->addWidget(m_down);
    connect(m_up, &QToolButton::clicked, this, [this] { emit stepped(true); });
    connect(m_down, &QToolButton::clicked, this, [this] { emit stepped(false); });
}

} // namespace wicker
