#include "ui/boxes.h"

#include <QLineEdit>
#include <QPushButton>

namespace ui {

QPushButton *button(const QString &name, const QString &caption, QWidget *parent)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
}

QLineEdit *passwordBox(const QString &name, QWidget *parent)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setEchoMode(QLineEdit::Password);
    e->setMaxLength(50);
    return e;
}

} // namespace ui
