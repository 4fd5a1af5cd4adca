#include "users/screens.h"

#include "shell/screen_registry.h"
#include "users/frm_kullanici_sifre.h"

namespace users {

void EkranlariKaydet()
{
    shell::EkranKaydet(QStringLiteral("Kullanici_Sifre"),
                       [](const shell::EkranBaglami &b) { return new Kullanici_Sifre(b.db); });
    shell::EkranKaydet(QStringLiteral("FrmProgramaGirisSifresiDegistirme"), [](const shell::EkranBaglami &b) {
        return new FrmProgramaGirisSifresiDegistirme(b.db);
    });
}

} // namespace users
