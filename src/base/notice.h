#pragma once

#include <QString>

// What a rule has to say to the operator. Rules never show anything: they return these values,
// and the screen shows them with its message boxes.
namespace base {

enum class Icon { None, Information, Warning, Critical, Question };

// A notice: its title, its text and its icon ("UYARI", "Uyarı !", "Dikkat"...).
struct Bildiri
{
    QString baslik;
    QString metin;
    Icon icon = Icon::Warning;
};

// A question a rule asks before it goes on: the screen shows it with Yes and No (and Cancel
// where `iptalVar`), the operator's choice going back to the rule. Questions that delete,
// overwrite or duplicate leave `evetVarsayilan` false, so that Enter answers No.
struct Soru
{
    QString baslik;
    QString metin;
    Icon icon = Icon::Question;
    bool iptalVar = false;
    bool evetVarsayilan = false;
};

} // namespace base
