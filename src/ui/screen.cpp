#include "ui/screen.h"

#include <QApplication>

#include "ui/message.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace ui {

Screen::Screen(const QString &formName, const QString &title, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(formName);
    setWindowTitle(title);
    setAttribute(Qt::WA_DeleteOnClose);
}

void Screen::watchForChanges(QWidget *root)
{
    auto mark = [this] { m_dirty = true; };
    for (QLineEdit *e : root->findChildren<QLineEdit *>()) {
        if (!qobject_cast<QComboBox *>(e->parentWidget()))
            connect(e, &QLineEdit::textEdited, this, mark);
    }
    for (QComboBox *c : root->findChildren<QComboBox *>()) {
        connect(c, &QComboBox::activated, this, mark);
        if (c->isEditable())
            connect(c, &QComboBox::editTextChanged, this, [this, c] {
                if (c->hasFocus())
                    m_dirty = true;
            });
    }
    for (QAbstractButton *b : root->findChildren<QAbstractButton *>()) {
        if (b->isCheckable())
            connect(b, &QAbstractButton::clicked, this, mark);
    }
    for (QPlainTextEdit *t : root->findChildren<QPlainTextEdit *>())
        connect(t, &QPlainTextEdit::textChanged, this, [this, t] {
            if (t->hasFocus())
                m_dirty = true;
        });
}

bool Screen::askToSaveChanges()
{
    if (!m_dirty)
        return true;
    switch (ui::show(Message{m_questionTitle, m_questionText, Icon::Question, Buttons::YesNoCancel},
                     this)) {
    case Answer::Yes:
        return save();
    case Answer::No:
        m_dirty = false;
        return true;
    default:
        return false;
    }
}

void Screen::setChangeQuestion(const QString &title, const QString &text)
{
    m_questionTitle = title;
    m_questionText = text;
}

void Screen::closeWindow()
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
        sub->close();
    else
        close();
}

void Screen::closeEvent(QCloseEvent *event)
{
    if (askToSaveChanges())
        event->accept();
    else
        event->ignore();
}

void Screen::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        event->accept();
        closeWindow();
        return;
    }
    QWidget::keyPressEvent(event);
}

void focusFirstBox(QWidget *screen)
{
    // A box, a list or a grid: not the tab bar above them, nor a button.
    const auto typedInto = [screen](QWidget *w) {
        return w && screen->isAncestorOf(w)
               && (qobject_cast<QLineEdit *>(w) || qobject_cast<QComboBox *>(w)
                   || qobject_cast<QPlainTextEdit *>(w) || qobject_cast<QAbstractItemView *>(w)
                   || qobject_cast<QAbstractSpinBox *>(w));
    };
    if (typedInto(QApplication::focusWidget()))
        return;
    for (QWidget *w = screen->nextInFocusChain(); w && w != screen; w = w->nextInFocusChain()) {
        if (typedInto(w) && w->isVisibleTo(screen) && w->isEnabled()
            && (w->focusPolicy() & Qt::TabFocus) && !w->focusProxy()) {
            w->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

} // namespace ui
