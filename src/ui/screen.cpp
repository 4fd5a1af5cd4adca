#include "ui/screen.h"

#include <QApplication>

#include "ui/message.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTextEdit>

namespace ui {

Screen::Screen(const QString &formName, const QString &title, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(formName);
    setWindowTitle(title);
    setAttribute(Qt::WA_DeleteOnClose);
    qApp->installEventFilter(this);
}

namespace {

// The letter a caption answers to with Alt, in Turkish capitals; "" when it has none.
QString mnemonicOf(const QString &text)
{
    const qsizetype at = text.indexOf(u'&');
    if (at < 0 || at + 1 >= text.size() || text[at + 1] == u'&')
        return QString();
    return QLocale(QLocale::Turkish).toUpper(text.mid(at + 1, 1));
}

} // namespace

QWidget *Screen::mnemonicTarget(QKeyEvent *event, int *tab) const
{
    if (event->modifiers() != Qt::AltModifier)
        return nullptr;
    // The letter typed, as a Turkish keyboard gives it ("i" is "İ", "ı" is "I"), or else the
    // key's own letter.
    const QLocale turkish(QLocale::Turkish);
    QString letter = turkish.toUpper(event->text());
    if (letter.size() != 1 || !letter[0].isLetter()) {
        if (event->key() < Qt::Key_A || event->key() > 0xff)
            return nullptr;
        letter = turkish.toUpper(QString(QChar(event->key())));
    }
    if (QWidget *target = mnemonicTarget(letter, tab))
        return target;
    // On a keyboard without "ı", Alt+I reaches a caption's "ı" as well as its "i".
    const QString plain = turkish.toUpper(QString(QChar(event->key())));
    return plain != letter && event->key() >= Qt::Key_A && event->key() <= Qt::Key_Z
               ? mnemonicTarget(plain, tab)
               : nullptr;
}

QWidget *Screen::mnemonicTarget(const QString &letter, int *tab) const
{
    for (QAbstractButton *b : findChildren<QAbstractButton *>()) {
        if (b->isVisible() && b->isEnabled() && mnemonicOf(b->text()) == letter)
            return b;
    }
    for (QLabel *l : findChildren<QLabel *>()) {
        if (l->isVisible() && l->buddy() && l->buddy()->isEnabled()
            && mnemonicOf(l->text()) == letter)
            return l->buddy();
    }
    for (QTabWidget *tabs : findChildren<QTabWidget *>()) {
        for (int i = 0; tabs->isVisible() && i < tabs->count(); ++i) {
            if (tabs->isTabEnabled(i) && mnemonicOf(tabs->tabText(i)) == letter) {
                if (tab)
                    *tab = i;
                return tabs;
            }
        }
    }
    return nullptr;
}

bool Screen::turnPage(QWidget *from, QKeyEvent *event, bool turn)
{
    if (event->modifiers() != Qt::ControlModifier
        || (event->key() != Qt::Key_PageDown && event->key() != Qt::Key_PageUp))
        return false;
    QTabWidget *tabs = nullptr;
    for (QWidget *w = from; w && w != this && !tabs; w = w->parentWidget())
        tabs = qobject_cast<QTabWidget *>(w);
    if (!tabs) {
        for (QTabWidget *t : findChildren<QTabWidget *>()) {
            if (t->isVisible()) {
                tabs = t;
                break;
            }
        }
    }
    if (!tabs || tabs->count() < 2)
        return false;
    if (!turn)
        return true;
    const int step = event->key() == Qt::Key_PageDown ? 1 : tabs->count() - 1;
    int page = tabs->currentIndex();
    for (int tries = 0; tries < tabs->count(); ++tries) {
        page = (page + step) % tabs->count();
        if (tabs->isTabEnabled(page))
            break;
    }
    tabs->setCurrentIndex(page);
    QWidget *shown = tabs->currentWidget();
    for (QWidget *w = nextInFocusChain(); w && w != this; w = w->nextInFocusChain()) {
        if (shown->isAncestorOf(w) && w->isVisible() && w->isEnabled()
            && (w->focusPolicy() & Qt::TabFocus) && !w->focusProxy()
            && !qobject_cast<QTabBar *>(w)) {
            w->setFocus(Qt::TabFocusReason);
            break;
        }
    }
    return true;
}

bool Screen::eventFilter(QObject *watched, QEvent *event)
{
    // Asked first whether the key is a shortcut: when it is one of this screen's letters and
    // the focus is in the screen, it stays a key instead of opening a menu, and the screen
    // takes it before the box in front can.
    const QEvent::Type type = event->type();
    if (type != QEvent::ShortcutOverride && type != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto *w = qobject_cast<QWidget *>(watched);
    auto *key = static_cast<QKeyEvent *>(event);
    if (!w || !(w == this || isAncestorOf(w)))
        return QWidget::eventFilter(watched, event);
    // Ctrl+PgDn and Ctrl+PgUp turn the screen's pages wherever the focus is in it.
    if (turnPage(w, key, type == QEvent::KeyPress)) {
        event->accept();
        return true;
    }
    if (!mnemonicTarget(key))
        return QWidget::eventFilter(watched, event);
    event->accept();
    if (type == QEvent::KeyPress)
        keyPressEvent(key);
    return true;
}

void Screen::watchForChanges(QWidget *root)
{
    auto mark = [this] { m_dirty = true; };
    for (QLineEdit *e : root->findChildren<QLineEdit *>()) {
        if (!qobject_cast<QComboBox *>(e->parentWidget()))
            connect(e, &QLineEdit::textEdited, this, mark);
    }
    for (QComboBox *c : root->findChildren<QComboBox *>()) {
        if (!c->isEditable()) {
            connect(c, &QComboBox::activated, this, mark);
            continue;
        }
        // An editable box says "activated" again when the focus merely leaves it: only what is
        // typed, or an entry chosen from its list, changes it.
        connect(c->lineEdit(), &QLineEdit::textEdited, this, mark);
        connect(c, &QComboBox::currentIndexChanged, this, [this, c] {
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
    int tab = -1;
    if (QWidget *target = mnemonicTarget(event, &tab)) {
        event->accept();
        if (auto *tabs = qobject_cast<QTabWidget *>(target); tabs && tab >= 0)
            tabs->setCurrentIndex(tab);
        else if (auto *b = qobject_cast<QAbstractButton *>(target))
            b->animateClick();
        else
            target->setFocus(Qt::ShortcutFocusReason);
        return;
    }
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        event->accept();
        closeWindow();
        return;
    }
    QWidget::keyPressEvent(event);
}

void setTabOrder(std::initializer_list<QWidget *> order)
{
    QWidget *previous = nullptr;
    for (QWidget *w : order) {
        if (previous)
            QWidget::setTabOrder(previous, w);
        previous = w;
    }
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
