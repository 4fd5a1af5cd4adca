#pragma once

#include <QString>

#include <functional>

class QWidget;

// Every question and warning of the program goes through here: one look, the fixed titles
// ("UYARI", "Uyarı !", "Dikkat", "Dikkat!"), Turkish buttons, and a hook through which a test
// reads the message and gives the answer.
namespace ui {

enum class Icon { None, Information, Warning, Critical, Question };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Cancel, Yes, No };

struct Message
{
    QString title;
    QString text;
    Icon icon = Icon::Information;
    Buttons buttons = Buttons::Ok;
};

// With a hook set, no box is shown: the hook reads the message and answers it.
using MessageHook = std::function<Answer(const Message &message)>;
void setMessageHook(MessageHook hook);

Answer show(const Message &message, QWidget *parent = nullptr);
// A notice with one button.
void notify(const QString &title, const QString &text, Icon icon = Icon::Information,
            QWidget *parent = nullptr);
// A question: true for Yes.
bool askYesNo(const QString &title, const QString &text, QWidget *parent = nullptr,
              Icon icon = Icon::Question);

} // namespace ui
