#include "shell/screens.h"

#include "fees/screens.h"
#include "shell/frm_okul_bilgileri.h"
#include "students/screens.h"
#include "ui/screen_registry.h"
#include "users/screens.h"

namespace shell {

void TumEkranlariKaydet()
{
    static bool s_done = false;
    if (s_done)
        return;
    s_done = true;
    ui::EkranKaydet(QStringLiteral("FrmOkulBilgileri"),
                    [](const ui::EkranBaglami &b) { return new FrmOkulBilgileri(b.db); });
    users::EkranlariKaydet();
    students::EkranlariKaydet();
    fees::EkranlariKaydet();
}

} // namespace shell
