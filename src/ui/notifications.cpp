#include "ui/notifications.h"

namespace ui {

Bildirimler &Bildirimler::instance()
{
    static Bildirimler s_instance;
    return s_instance;
}

} // namespace ui
