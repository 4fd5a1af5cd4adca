#include "students/screen_parts.h"

#include "ui/message.h"

#include <QMdiSubWindow>

namespace students {

void ekraniKapat(QWidget *screen)
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(screen->parentWidget())) {
        sub->close();
    } else {
        screen->close();
    }
}

void hazirDegil(const QString &caption, QWidget *parent)
{
    ui::notify(QStringLiteral("Dikkat"),
               QStringLiteral("\"%1\" bölümü bu sürümde henüz hazır değil.").arg(caption),
               ui::Icon::Information, parent);
}

} // namespace students
