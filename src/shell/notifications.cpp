#include "shell/notifications.h"

namespace shell {

Bildirimler &Bildirimler::instance()
{
    static Bildirimler s_instance;
    return s_instance;
}

} // namespace shell
