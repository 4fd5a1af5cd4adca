#include "gui_support.h"

#include "store/database.h"

#include "ui/grid.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace testing {

MessageRecorder::MessageRecorder()
{
    ui::setMessageHook([this](const ui::Message &m) {
        m_messages.append(m);
        if (m.buttons == ui::Buttons::Ok)
            return ui::Answer::Ok;
        return m_answers.isEmpty() ? ui::Answer::Yes : m_answers.takeFirst();
    });
    store::setMessageHandler([this](store::MessageKind, const QString &title, const QString &text) {
        m_messages.append(ui::Message{title, text, ui::Icon::Warning, ui::Buttons::Ok});
    });
}

MessageRecorder::~MessageRecorder()
{
    ui::setMessageHook(nullptr);
    store::setMessageHandler(nullptr);
}

QStringList MessageRecorder::texts() const
{
    QStringList l;
    for (const ui::Message &m : m_messages)
        l << m.text;
    return l;
}

QStringList MessageRecorder::titles() const
{
    QStringList l;
    for (const ui::Message &m : m_messages)
        l << m.title;
    return l;
}

ModalDriver::ModalDriver()
{
    m_timer.setInterval(20);
    connect(&m_timer, &QTimer::timeout, this, &ModalDriver::poll);
    m_timer.start();
}

void ModalDriver::poll()
{
    QWidget *modal = QApplication::activeModalWidget();
    // Once a check failed, every dialog is turned away so that the test ends instead of waiting.
    if (QTest::currentTestFailed()) {
        m_steps.clear();
        if (auto *dialog = qobject_cast<QDialog *>(modal))
            dialog->reject();
        return;
    }
    if (!modal || modal == m_last || !modal->isVisible() || m_steps.isEmpty())
        return;
    m_last = modal;
    QApplication::setActiveWindow(modal);
    const Step step = m_steps.takeFirst();
    // A step may open the next dialog, whose loop runs inside the step: it is run from a
    // single shot of its own, so that this timer goes on polling meanwhile.
    QPointer<QWidget> target(modal);
    QTimer::singleShot(0, this, [step, target] {
        if (target)
            step(target);
    });
}

void typeInto(QWidget *parent, const QString &name, const QString &text)
{
    auto *edit = parent->findChild<QLineEdit *>(name);
    if (!edit) {
        qWarning("no box %s", qPrintable(name));
        return;
    }
    edit->setFocus();
    edit->selectAll();
    typeText(edit, text);
}

void typeText(QWidget *widget, const QString &text)
{
    // QTest types ASCII only; a Turkish letter goes in as a key event carrying its text.
    for (const QChar c : text) {
        if (c.unicode() < 128) {
            QTest::keyClick(widget, c.toLatin1());
            continue;
        }
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QApplication::sendEvent(widget, &press);
        QApplication::sendEvent(widget, &release);
    }
}

void click(QWidget *parent, const QString &name)
{
    auto *button = parent->findChild<QAbstractButton *>(name);
    if (!button) {
        qWarning("no button %s", qPrintable(name));
        return;
    }
    QTest::mouseClick(button, Qt::LeftButton);
}

void typeCell(ui::Grid *grid, int row, int column, const QString &text)
{
    grid->setFocus();
    grid->setCurrentCell(row, column);
    QTest::keyClick(grid, Qt::Key_F2);
    QApplication::processEvents();
    QWidget *editor = QApplication::focusWidget();
    if (!editor || !grid->isAncestorOf(editor)) {
        // In a window that is not active the focus does not follow: the open editor is the
        // visible child of the grid's viewport.
        editor = nullptr;
        for (QWidget *w : grid->viewport()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (w->isVisible())
                editor = w;
        }
    }
    if (!editor) {
        qWarning("no editor opened at %d,%d", row, column);
        return;
    }
    if (auto *combo = qobject_cast<QComboBox *>(editor))
        combo->lineEdit()->selectAll();
    else if (auto *edit = qobject_cast<QLineEdit *>(editor))
        edit->selectAll();
    QWidget *target = editor;
    if (auto *combo = qobject_cast<QComboBox *>(editor))
        target = combo->lineEdit();
    typeText(target, text);
    QTest::keyClick(target, Qt::Key_Return);
    // The cell closes and the cursor moves on in queued steps, as between two keystrokes.
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

void screenshot(QWidget *widget, const QString &name)
{
    const QString folder = qEnvironmentVariable("VORTEL_EKRAN_KLASORU");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    widget->grab().save(QDir(folder).absoluteFilePath(name + u".png"_s));
}

} // namespace testing
