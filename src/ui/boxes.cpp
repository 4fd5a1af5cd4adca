#include "ui/boxes.h"

#include <QFormLayout>
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

bool carriesCaption(BoxKind kind)
{
    return kind == BoxKind::Check || kind == BoxKind::Option;
}

QWidget *makeBox(const Box &box, QWidget *parent)
{
    QWidget *w = nullptr;
    switch (box.kind) {
    case BoxKind::Text:
    case BoxKind::Number: {
        auto *e = new QLineEdit(parent);
        limitTo(e, box.size);
        if (box.kind == BoxKind::Number) {
            e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        }
        w = e;
        break;
    }
    case BoxKind::Memo: {
        auto *t = new QPlainTextEdit(parent);
        t->setTabChangesFocus(true);
        w = t;
        break;
    }
    case BoxKind::Date:
        w = new DateEdit(parent);
        break;
    case BoxKind::Money: {
        auto *m = new MoneyEdit(parent);
        if (!box.format.isEmpty()) {
            m->setFormat(box.format);
        }
        w = m;
        break;
    }
    case BoxKind::Choice:
    case BoxKind::Typed: {
        auto *c = new QComboBox(parent);
        if (box.kind == BoxKind::Typed) {
            c->setEditable(true);
            limitTo(c->lineEdit(), box.size);
        }
        c->addItems(box.items);
        w = c;
        break;
    }
    case BoxKind::Check:
        w = new QCheckBox(box.caption, parent);
        break;
    case BoxKind::Option:
        w = new QRadioButton(box.caption, parent);
        break;
    }
    w->setObjectName(box.name);
    if (box.maxWidth > 0) {
        w->setMaximumWidth(box.maxWidth);
    }
    if (!box.toolTip.isEmpty()) {
        w->setToolTip(box.toolTip);
    }
    return w;
}

void addFormRows(QFormLayout *form, const QList<std::pair<Box, QWidget *>> &boxes)
{
    for (const auto &[box, widget] : boxes) {
        if (carriesCaption(box.kind)) {
            form->addRow(widget);
        } else {
            form->addRow(box.caption, widget);
        }
    }
}

} // namespace ui
