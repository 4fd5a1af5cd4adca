#pragma once

#include "base/notice.h"

#include <QString>

#include <functional>

class QWidget;

// Every question and warning of the program goes through here: one look, the fixed titles
// ("UYARI", "Uyarı !", "Dikkat", "Dikkat!"), Turkish buttons, and a hook through which a test
// reads the message and gives the answer.
namespace ui {

using Icon = base::Icon;
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Cancel, Yes, No };

struct Message
{
    QString title;
    QString text;
    Icon icon = Icon::Information;
    Buttons buttons = Buttons::Ok;
    // With Yes and No: whether Enter answers Yes. Questions that delete, overwrite or
    // duplicate answer No to Enter.
    bool yesDefault = true;
};

// With a hook set, no box is shown: the hook reads the message and answers it.
using MessageHook = std::function<Answer(const Message &message)>;
void setMessageHook(MessageHook hook);

Answer show(const Message &message, QWidget *parent = nullptr);
// A notice with one button.
void notify(const QString &title, const QString &text, Icon icon = Icon::Information,
            QWidget *parent = nullptr);
// A rule's notice, as it stands.
void notify(const base::Bildiri &notice, QWidget *parent = nullptr);
// A rule's question: true for Yes (Cancel counts as No).
bool ask(const base::Soru &question, QWidget *parent = nullptr);
// A question that deletes, overwrites or duplicates: true for Yes; Enter answers No.
bool askBeforeLosing(const QString &title, const QString &text, QWidget *parent = nullptr);
// A question: true for Yes.
bool askYesNo(const QString &title, const QString &text, QWidget *parent = nullptr,
              Icon icon = Icon::Question);
// Tells the operator that the part of the program a command leads to is not built yet.
void notReady(const QString &caption, QWidget *parent = nullptr);

} // namespace ui
