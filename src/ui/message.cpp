#include "ui/message.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace ui {

namespace {

MessageHook &hook()
{
    static MessageHook s_hook;
    return s_hook;
}

QMessageBox::Icon boxIcon(Icon icon)
{
    switch (icon) {
    case Icon::None:
        return QMessageBox::NoIcon;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Warning:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

} // namespace

void setMessageHook(MessageHook h)
{
    hook() = std::move(h);
}

Answer show(const Message &message, QWidget *parent)
{
    if (hook())
        return hook()(message);
    if (!qApp) // no screen at all: a command-line run takes the safe answer
        return message.buttons == Buttons::Ok ? Answer::Ok : Answer::No;

    QMessageBox box(boxIcon(message.icon), message.title, message.text, QMessageBox::NoButton,
                    parent ? parent : QApplication::activeWindow());
    QPushButton *ok = nullptr;
    QPushButton *cancel = nullptr;
    QPushButton *yes = nullptr;
    QPushButton *no = nullptr;
    switch (message.buttons) {
    case Buttons::Ok:
        ok = box.addButton(QStringLiteral("&Tamam"), QMessageBox::AcceptRole);
        box.setDefaultButton(ok);
        break;
    case Buttons::OkCancel:
        ok = box.addButton(QStringLiteral("&Tamam"), QMessageBox::AcceptRole);
        cancel = box.addButton(QStringLiteral("İ&ptal"), QMessageBox::RejectRole);
        box.setDefaultButton(ok);
        break;
    case Buttons::YesNo:
        yes = box.addButton(QStringLiteral("&Evet"), QMessageBox::YesRole);
        no = box.addButton(QStringLiteral("&Hayır"), QMessageBox::NoRole);
        box.setDefaultButton(message.yesDefault ? yes : no);
        box.setEscapeButton(no);
        break;
    case Buttons::YesNoCancel:
        yes = box.addButton(QStringLiteral("&Evet"), QMessageBox::YesRole);
        no = box.addButton(QStringLiteral("&Hayır"), QMessageBox::NoRole);
        cancel = box.addButton(QStringLiteral("İ&ptal"), QMessageBox::RejectRole);
        box.setDefaultButton(message.yesDefault ? yes : no);
        box.setEscapeButton(cancel);
        break;
    }
    box.exec();
    QAbstractButton *clicked = box.clickedButton();
    if (clicked == yes && yes)
        return Answer::Yes;
    if (clicked == no && no)
        return Answer::No;
    if (clicked == ok && ok)
        return Answer::Ok;
    if (message.buttons == Buttons::YesNo)
        return Answer::No;
    return message.buttons == Buttons::Ok ? Answer::Ok : Answer::Cancel;
}

void notify(const QString &title, const QString &text, Icon icon, QWidget *parent)
{
    show(Message{title, text, icon, Buttons::Ok}, parent);
}

void notify(const base::Bildiri &notice, QWidget *parent)
{
    notify(notice.baslik, notice.metin, notice.icon, parent);
}

bool ask(const base::Soru &question, QWidget *parent)
{
    const Message m{question.baslik, question.metin, question.icon,
                    question.iptalVar ? Buttons::YesNoCancel : Buttons::YesNo,
                    question.evetVarsayilan};
    return show(m, parent) == Answer::Yes;
}

bool askBeforeLosing(const QString &title, const QString &text, QWidget *parent)
{
    return show(Message{title, text, Icon::Question, Buttons::YesNo, false}, parent) == Answer::Yes;
}

bool askYesNo(const QString &title, const QString &text, QWidget *parent, Icon icon)
{
    return show(Message{title, text, icon, Buttons::YesNo}, parent) == Answer::Yes;
}

void notReady(const QString &caption, QWidget *parent)
{
    notify(QStringLiteral("Dikkat"),
           QStringLiteral("\"%1\" bölümü bu sürümde henüz hazır değil.").arg(caption),
           Icon::Information, parent);
}

} // namespace ui
