#include "users/screens.h"

#include "ui/screen_registry.h"
#include "users/frm_kullanici_sifre.h"
#include "users/frm_programa_giris_sifresi_degistirme.h"

namespace users {

void EkranlariKaydet()
{
    ui::EkranKaydet(QStringLiteral("Kullanici_Sifre"),
                    [](const ui::EkranBaglami &b) { return new Kullanici_Sifre(b.db); });
    ui::EkranKaydet(
        QStringLiteral("FrmProgramaGirisSifresiDegistirme"),
        [](const ui::EkranBaglami &b) { return new FrmProgramaGirisSifresiDegistirme(b.db); });
}

} // namespace users
