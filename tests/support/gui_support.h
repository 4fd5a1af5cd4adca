#pragma once

#include "ui/message.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace ui {
class Grid;
}

namespace testing {

// Records the message boxes and store messages shown during its life, answering questions
// from a queue (Yes when the queue is empty).
class MessageRecorder
{
public:
    MessageRecorder();
    ~MessageRecorder();

    void answer(ui::Answer a) { m_answers.append(a); }
    QList<ui::Message> messages() const { return m_messages; }
    QStringList texts() const;
    QStringList titles() const;
    void clear() { m_messages.clear(); }

private:
    QList<ui::Message> m_messages;
    QList<ui::Answer> m_answers;
};

// Answers the modal dialogs that a blocking call opens, in order: each step gets the next
// dialog that comes up and does what an operator does to it (types, ticks, presses buttons).
class ModalDriver : public QObject
{
    Q_OBJECT

public:
    using Step = std::function<void(QWidget *dialog)>;
    ModalDriver();
    void then(Step step) { m_steps.append(std::move(step)); }
    int remaining() const { return int(m_steps.size()); }

private:
    void poll();

    QTimer m_timer;
    QList<Step> m_steps;
    QPointer<QWidget> m_last;
};

// Types into the child of `parent` with that object name, as keystrokes.
void typeInto(QWidget *parent, const QString &name, const QString &text);
void click(QWidget *parent, const QString &name);
// Types text into the focused widget, Turkish letters included.
void typeText(QWidget *widget, const QString &text);
// Types into a grid cell as the operator does: F2 opens the cell, the text replaces what was
// there, Enter closes it and the cursor moves on.
void typeCell(ui::Grid *grid, int row, int column, const QString &text);
// Saves a picture of the widget as <VORTEL_EKRAN_KLASORU>/<name>.png when that is set.
void screenshot(QWidget *widget, const QString &name);

} // namespace testing
